#pragma once

#include <string>
#include <utility>

#include "base/ErrorClass.h"
#include "base/KRE_Base.h"

/// The message of the `Error` that ends `act`, or "" if it succeeds.
template <class Act>
std::string ErrorText(Act&& act)
{
    try {
        std::forward<Act>(act)();
    } catch (const KRE_Error& error) {
        return error.message;
    } catch (const ErrorMsg& error) {
        return error.message;
    }
    return "";
}
