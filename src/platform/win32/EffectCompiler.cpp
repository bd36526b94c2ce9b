#include "platform/EffectCompiler.h"

/// The system's compiler is no part of every Windows, so effects are compiled where ours is.
std::string CompileEffect(const std::string&, std::string&)
{
    return "only the Linux program compiles effects";
}
