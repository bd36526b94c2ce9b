#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/headless/d3dx/effect/FxParameter.h"
#include "platform/headless/d3dx/effect/FxProgram.h"

namespace headless::fx {

/// How listings call parameters and their parts.
class FxListedNames {
public:
    explicit FxListedNames(const std::vector<std::unique_ptr<FxParameter>>& parameters);

    const std::string& Of(const FxParameter& parameter) const;

private:
    void Add(const FxParameter& parameter, const std::string& name);

    std::map<const FxParameter*, std::string> names;
};

/// A name or text of a file on one line, cut to a length that people read; control characters as `\x0A`.
std::string FxListedText(std::string_view bytes);
/// The shortest decimal number that reads back as the same.
std::string FxListedFloat(float value);

/// Appends the instructions of a computation, each as a line behind `indent`. Parameters have their names, `outputs`
/// is the name of the registers that take float results.
void FxListProgram(const FxProgram& program, const FxListedNames& names, std::string_view indent,
                   std::string_view outputs, std::string& textOut);
/// Appends a line for each parameter that goes to registers.
void FxListInputs(const FxProgramInputs& inputs, const FxListedNames& names,
                  std::string_view indent, std::string& textOut);

} // namespace headless::fx
