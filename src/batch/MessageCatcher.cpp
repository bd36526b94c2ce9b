#include "batch/MessageCatcher.h"

#include <utility>

#include "base/Log.h"
#include "batch/MessageTable.h"
#include "platform/headless/win32/FileInHand.h"

static MessageCatcher* gCatcher; // the one that lives

MessageCatcher::MessageCatcher(SceneResult& target) : result(target)
{
    gCatcher = this;
    gLogSink = [](const char*) {};
    gReportObserver = this;
    headless::gNoKeywordSink = [] { gCatcher->Add(OwnMessage(kCodeNoKeyword)); };
}

MessageCatcher::~MessageCatcher()
{
    headless::gNoKeywordSink = nullptr;
    gReportObserver = nullptr; // the sink stays: a worker never writes a log file
    gCatcher = nullptr;
}

void MessageCatcher::OnReport(ReportKind kind, const char* source, const char* text)
{
    if (isLeftOut)
        return;
    const MessageRow& row = RowOfText(text);
    SceneMessage message;
    message.code = row.code;
    message.level = row.level == MessageLevel::kNote ? row.level : MessageLevel::kWarning;
    if (kind == ReportKind::kError)
        message.level = MessageLevel::kError;
    message.source = source;
    message.text = text;
    Add(std::move(message));
}

void MessageCatcher::Add(SceneMessage message)
{
    if (!result.messages.empty()) {
        SceneMessage& last = result.messages.back();
        if (last.text == message.text && last.source == message.source &&
            last.level == message.level) {
            ++last.count;
            return;
        }
    }
    // An error is the reason of a failure and is kept in any case.
    if (result.messages.size() >= kMostKept && message.level != MessageLevel::kError)
        ++result.messagesLeftOut;
    else
        result.messages.push_back(std::move(message));
}
