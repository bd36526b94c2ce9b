#pragma once

#include <string>

#include "base/ErrorClass.h"
#include "base/KRE_Base.h"

/// The message of the error that `work` throws, of either family, without the label of the class;
/// "no error" if it throws none.
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
