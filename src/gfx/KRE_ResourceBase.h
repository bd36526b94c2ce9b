#pragma once

#include "base/KRE_Base.h"

class KRE_ResourceManager;

/// Base of the objects whose device objects are shared through a manager.
class KRE_ResourceBase : public KRE_Base {
public:
    KRE_ResourceBase(const KRE_ResourceBase&) = delete; // a copy would release the same id twice
    KRE_ResourceBase& operator=(const KRE_ResourceBase&) = delete;

    int32_t resourceId = -1;                ///< -1 for an object that is not shared
    KRE_ResourceManager* manager = nullptr; ///< not owned, lives in KRE_Gfx

protected:
    KRE_ResourceBase() = default;
};
