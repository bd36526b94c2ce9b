#include "platform/headless/d3dx/language/HlCompiler.h"

#include "platform/headless/d3dx/language/HlSelector.h"
#include "platform/headless/d3dx/language/HlWriter.h"

#include <algorithm>

namespace headless::hl {

HlCompiler::HlCompiler(std::span<const FxToken> text) : words(text), parser(text, unit)
{}

void HlCompiler::ReadOnce()
{
    if (!isRead)
        parser.ReadDeclarations();
    isRead = true;
}

HlFunction* HlCompiler::FindFunction(const FxToken& name, HlLog& log)
{
    const auto found = unit.functionsByName.find(name.text);
    if (found != unit.functionsByName.end())
        return found->second.back();
    log.Error(name.place, FxError::UnknownName, "there is no function " + FxDescribe(name));
    return nullptr;
}

std::shared_ptr<const HlShader> HlCompiler::Compile(const FxToken& profile, const FxToken& function,
                                                    size_t argumentsAt)
{
    return Compile(profile.text, profile, function, argumentsAt);
}

std::shared_ptr<const HlShader> HlCompiler::Compile(std::string_view profile, const FxToken& at,
                                                    const FxToken& function, size_t argumentsAt)
{
    std::string key = std::string(profile) + ' ' + std::string(function.text);
    for (size_t i = argumentsAt, depth = 0; i < words.size(); ++i) {
        key += ' ';
        key += words[i].text;
        depth += words[i].Is("(") ? 1 : 0;
        if (words[i].Is(")") && --depth == 0)
            break;
    }
    const auto [place, isNew] = known.try_emplace(std::move(key));
    if (isNew) {
        const auto made = std::make_shared<HlShader>();
        Run(profile, at, function, argumentsAt, *made);
        place->second = made;
    }
    return place->second;
}

void HlCompiler::Run(std::string_view profileName, const FxToken& at, const FxToken& name,
                     size_t argumentsAt, HlShader& shaderOut)
{
    ReadOnce();
    HlLog log;
    const HlProfile* profile = HlFindProfile(profileName);
    shaderOut.lacksProfile = !profile;
    if (!profile)
        log.Error(at.place, FxError::UnknownName,
                  "there is no profile '" + std::string(profileName) + "'");
    HlFunction* const function = profile ? FindFunction(name, log) : nullptr;
    std::vector<HlExpression*> arguments;
    size_t end = 0;
    if (function && parser.ReadArguments(argumentsAt, log, arguments, end)) {
        bool isTooLarge = true;
        const std::string_view first = profile->name;
        while (profile && isTooLarge) {
            HlLog trial;
            if (Try(*profile, *function, arguments, trial, shaderOut, isTooLarge) || !isTooLarge ||
                profile->larger.empty()) {
                for (const HlMessage& message : trial.Messages())
                    message.isWarning
                        ? log.Warning(message.place, message.kind, message.text)
                        : static_cast<void>(log.Error(message.place, message.kind, message.text));
                break;
            }
            profile = HlFindProfile(profile->larger);
        }
        shaderOut.profile = profile;
        if (shaderOut.IsMade() && profile->name != first)
            log.Warning(name.place, FxError::Limit,
                        "the shader is too large for " + std::string(first) + " and becomes " +
                            std::string(profile->name));
    }
    if (log.Failed())
        shaderOut.words.clear();
    shaderOut.messages = log.Messages();
}

bool HlCompiler::Try(const HlProfile& profile, HlFunction& function,
                     const std::vector<HlExpression*>& arguments, HlLog& log, HlShader& shaderOut,
                     bool& isTooLargeOut)
{
    isTooLargeOut = false;
    HlGraph graph(profile);
    HlConstants constants(graph);
    HlRunner runner(unit, parser, graph, constants, log, budget);
    if (!runner.RunEntry(function, arguments))
        return false;
    HlLiveness liveness(graph, runner.outputs);
    liveness.Run();
    HlLiterals literals(profile.hasFreeSwizzles);
    HlMachineCode code;
    HlSelector(graph, liveness, runner.inputs, runner.outputs, literals, code).Run();
    HlAssignRegisters(code);
    HlRefusal refusal;
    if (HlWriter(profile, code, constants, literals, runner.inputs, runner.outputs)
            .Write(function.place, shaderOut.words, refusal))
        return true;
    shaderOut.words.clear();
    isTooLargeOut = refusal.isTooLarge;
    return log.Error(refusal.place, FxError::Limit, refusal.text);
}

} // namespace headless::hl
