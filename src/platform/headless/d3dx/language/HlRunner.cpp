// Slots, names, masks.

#include "platform/headless/d3dx/language/HlRunner.h"

#include <algorithm>

namespace headless::hl {

HlRunner::HlRunner(HlUnit& program, HlParser& reader, HlGraph& target, HlConstants& uniforms,
                   HlLog& messages, HlBudget& left)
    : unit(program),
      parser(reader),
      graph(target),
      constants(uniforms),
      log(messages),
      budget(left)
{}

bool HlRunner::Fail(FxPlace place, FxError kind, const std::string& text)
{
    return log.Error(place, kind, text);
}

HlValue HlRunner::FailValue(FxPlace place, FxError kind, const std::string& text)
{
    log.Error(place, kind, text);
    return ErrorValue();
}

void HlRunner::Warn(FxPlace place, const std::string& text)
{
    log.Warning(place, FxError::TypeMismatch, text);
}

/// Counts work, so that a text cannot take long. False, after an error, if there is too much.
bool HlRunner::Spend(FxPlace place, size_t steps)
{
    if (stops)
        return false;
    if (budget.steps < steps || graph.IsFull()) {
        stops = true;
        budget.steps = 0;
        return Fail(place, FxError::Limit, "the shader is too large");
    }
    budget.steps -= steps;
    return true;
}

// ---- Slots and names

uint32_t HlRunner::Allocate(size_t cells, HlRef value)
{
    const auto first = static_cast<uint32_t>(slots.size());
    slots.insert(slots.end(), cells, value);
    heights.insert(heights.end(), cells, static_cast<uint16_t>(masks.size()));
    return first;
}

void HlRunner::CloseScope(const Scope& scope)
{
    names.resize(scope.names);
    slots.resize(scope.slots);
    heights.resize(scope.slots);
}

const HlRunner::Named* HlRunner::FindName(std::string_view name) const
{
    for (size_t i = names.size(); i-- > frame;)
        if (names[i].name == name)
            return &names[i];
    const auto global = unit.globals.find(name);
    if (global == unit.globals.end())
        return nullptr;
    const auto found = globalNames.find(global->second);
    return found == globalNames.end() ? nullptr : &names[found->second];
}

uint32_t HlRunner::Declare(std::string_view name, const HlVariable& variable, const HlType& type)
{
    const uint32_t slot = Allocate(type.cells, HlRef());
    names.push_back({name, &variable, slot, &type});
    return slot;
}

/// Static variables and constants of the text; the others are parameters of the effect.
bool HlRunner::DeclareGlobals()
{
    for (const HlVariable* variable : unit.globalList) {
        const bool isOwn = variable->isStatic || (variable->isConst && variable->value);
        if (!isOwn || variable->type->kind == HlKind::Sampler ||
            variable->type->kind == HlKind::Object)
            continue;
        HlRefs refs;
        const HlType* type = variable->type;
        if (variable->value) {
            if (!Initialize(*type, *variable->value, refs))
                return false;
            if (type->kind == HlKind::Array && type->count == 0)
                type = unit.types.Array(*type->element,
                                        static_cast<uint32_t>(refs.size() / type->element->cells));
        }
        if (!Spend(variable->place, refs.size()))
            return false;
        globalNames.emplace(variable, names.size());
        const uint32_t slot = Declare(variable->name, *variable, *type);
        std::copy(refs.begin(), refs.end(), slots.begin() + slot);
    }
    frame = names.size();
    return true;
}

// ---- Masks

void HlRunner::PushMask()
{
    const uint32_t slot = Allocate(1, graph.Literal(1.0f));
    masks.push_back(slot);
}

/// Whether the program still runs here, as far as masks from `height` on tell.
HlRef HlRunner::Live(size_t height)
{
    HlRef live = graph.Literal(1.0f);
    for (size_t i = height; i < masks.size(); ++i)
        if (!graph.IsValue(slots[masks[i]], 1.0f))
            live = graph.And(live, slots[masks[i]]);
    return live;
}

bool HlRunner::IsDead()
{
    return std::any_of(masks.begin(), masks.end(),
                       [&](uint32_t mask) { return graph.IsValue(slots[mask], 0.0f); });
}

void HlRunner::Set(uint32_t slot, HlRef value)
{
    if (!journals.empty())
        journals.back().emplace_back(slot, slots[slot]);
    slots[slot] = value;
}

/// A value is kept where a mask that is younger than the slot says that this does not run.
void HlRunner::Write(uint32_t slot, HlRef value)
{
    const bool isFree = slot >= freeSlots.first && slot < freeSlots.second;
    const HlRef live = isFree ? graph.Literal(1.0f) : Live(heights[slot]);
    if (graph.IsValue(live, 1.0f))
        Set(slot, value);
    else if (!graph.IsValue(live, 0.0f))
        Set(slot, graph.Select({live}, {value}, {slots[slot]})[0]);
}

} // namespace headless::hl
