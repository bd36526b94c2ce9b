#include "batch/ReportPage.h"

#include <cerrno>
#include <cstdio>

#include "base/WriteWholeFile.h"
#include "batch/Base64.h"
#include "batch/BatchText.h"
#include "batch/MessageTable.h"
#include "batch/PageTexts.h"

namespace {

constexpr size_t kMostMessagesOfCard = 12;
constexpr size_t kMostTextOfCard = 300;       // bytes of a message
constexpr size_t kMostBytesOfMessages = 6000; // of a card, with their marks
constexpr size_t kMostMarkedText = 6 * kMostTextOfCard + 100;

/// A text for a page, safe in attributes too.
std::string Escaped(std::string_view text)
{
    std::string escaped;
    for (const char c : OneLine(text)) {
        switch (c) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        case '\'':
            escaped += "&#39;";
            break;
        default:
            escaped += c;
        }
    }
    return escaped;
}

std::string PictureHtml(const SceneResult& result, bool isDrawn)
{
    const std::string& thumb = result.thumb;
    if (isDrawn && !thumb.empty())
        return "<img alt=\"\" src=\"data:image/jpeg;base64," + Base64(thumb) + "\">";
    const char* reason = "the frame was not drawn";
    if (!isDrawn)
        reason = "no frames were asked for";
    else if (IsFailure(result.status))
        reason = "the scene failed";
    return std::string("<div class=\"none\">") + reason + "</div>";
}

std::string FactsHtml(const SceneResult& result)
{
    std::string text;
    if (result.hasSource)
        text += GroupedNumber(result.source.sizeBytes) + " bytes";
    if (IsTargetKnown(result))
        text += " to " + GroupedNumber(result.target.sizeBytes);
    if (!IsFailure(result.status) && result.hasSource)
        text += "<br>" + GroupedNumber(result.counts.meshes) + " meshes, " +
                GroupedNumber(result.counts.vertices) + " vertices, " +
                GroupedNumber(result.counts.faces) + " faces";
    return text;
}

std::string MessagesHtml(const SceneResult& result)
{
    std::string html;
    size_t count = 0;
    for (const SceneMessage& message : result.messages) {
        if (++count > kMostMessagesOfCard || html.size() > kMostBytesOfMessages - kMostMarkedText) {
            html += "<li>and " + GroupedNumber(result.messages.size() - count + 1) + " more</li>";
            break;
        }
        std::string text = message.text.substr(0, kMostTextOfCard);
        html += std::string("<li class=\"") + LevelName(message.level) + "\">" +
                CodeText(message.code) + " " + Escaped(text) + "</li>";
    }
    return html.empty() ? "" : "<ul>" + html + "</ul>";
}

} // namespace

ReportPage::ReportPage(const std::string& path, size_t sceneCountIn)
    : file(path),
      sceneCount(sceneCountIn)
{}

void ReportPage::Add(const std::string& path, const SceneResult& result, bool isDrawn)
{
    ++counts[static_cast<size_t>(result.status)];
    const bool hasWarnings = result.Worst() == MessageLevel::kWarning;
    withWarnings += hasWarnings && !IsFailure(result.status);
    if (sceneCount > kMostCards && !hasWarnings && !IsFailure(result.status))
        return;
    const std::string name = Escaped(path);
    cards += std::string("<article data-status=\"") + StatusName(result.status) +
             "\" data-warnings=\"" + (hasWarnings ? "1" : "0") + "\" data-name=\"" + name + "\">" +
             PictureHtml(result, isDrawn) + "<h2>" + name + "</h2><p class=\"" +
             StatusName(result.status) + "\">" + StatusName(result.status) + "</p><p>" +
             FactsHtml(result) + "</p>" + MessagesHtml(result) + "</article>\n";
}

bool ReportPage::Write()
{
    std::string head = kPageStart;
    std::string choices = "<option value=\"\">all</option>";
    std::string summary;
    for (uint8_t i = 0; i < kSceneStatuses; ++i) {
        if (counts[i] == 0)
            continue;
        const std::string name = StatusName(static_cast<SceneStatus>(i));
        choices += "<option>" + name + "</option>";
        summary += GroupedNumber(counts[i]) + " " + name + ", ";
    }
    choices += "<option value=\"warnings\">with warnings</option>";
    summary += GroupedNumber(withWarnings) + " with warnings";
    if (sceneCount > kMostCards)
        summary += ". Scenes without warnings are not shown";
    const std::string page = head + "<p>" + summary + "</p>" + kPageSearch + choices +
                             "</select></label><output></output></form><main>\n" + cards +
                             "</main>" + kPageEnd;
    return WriteWholeFile(file, page);
}
