#pragma once

#include <string>

#include "base/ErrorClass.h"
#include "base/KRE_Base.h"

/// The message of the error that `work` raises, of either family and without the label of who raised
/// it; "no error" without one.
template <class Work>
std::string RaisedBy(Work work)
{
    try {
        work();
    } catch (const KRE_Error& error) {
        return error.message;
    } catch (const ErrorMsg& error) {
        return error.message;
    }
    return "no error";
}
