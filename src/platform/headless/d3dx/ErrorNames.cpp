#include <dxerr9.h>

#include <d3dx9.h>

namespace headless {

namespace {

struct ResultName {
    HRESULT code;
    const char* name;
    const char* description;
};

// One line for each code that the engine or this host can encounter.
const ResultName kResultNames[] = {
    {S_OK, "S_OK", "The call succeeded"},
    {S_FALSE, "S_FALSE", "The call succeeded without a result"},
    {D3DOK_NOAUTOGEN, "D3DOK_NOAUTOGEN", "The texture was made without automatic mip levels"},
    {D3DERR_WRONGTEXTUREFORMAT, "D3DERR_WRONGTEXTUREFORMAT", "The texture has an unfit format"},
    {D3DERR_UNSUPPORTEDCOLOROPERATION, "D3DERR_UNSUPPORTEDCOLOROPERATION",
     "The device does not have this colour operation"},
    {D3DERR_UNSUPPORTEDCOLORARG, "D3DERR_UNSUPPORTEDCOLORARG",
     "The device does not have this colour argument"},
    {D3DERR_UNSUPPORTEDALPHAOPERATION, "D3DERR_UNSUPPORTEDALPHAOPERATION",
     "The device does not have this alpha operation"},
    {D3DERR_UNSUPPORTEDALPHAARG, "D3DERR_UNSUPPORTEDALPHAARG",
     "The device does not have this alpha argument"},
    {D3DERR_TOOMANYOPERATIONS, "D3DERR_TOOMANYOPERATIONS",
     "More texture stages are set than the device has"},
    {D3DERR_CONFLICTINGTEXTUREFILTER, "D3DERR_CONFLICTINGTEXTUREFILTER",
     "The texture filters cannot be used together"},
    {D3DERR_UNSUPPORTEDFACTORVALUE, "D3DERR_UNSUPPORTEDFACTORVALUE",
     "The texture factor is out of the device's range"},
    {D3DERR_CONFLICTINGRENDERSTATE, "D3DERR_CONFLICTINGRENDERSTATE",
     "The render states cannot be used together"},
    {D3DERR_UNSUPPORTEDTEXTUREFILTER, "D3DERR_UNSUPPORTEDTEXTUREFILTER",
     "The device does not have this texture filter"},
    {D3DERR_CONFLICTINGTEXTUREPALETTE, "D3DERR_CONFLICTINGTEXTUREPALETTE",
     "The textures need different palettes"},
    {D3DERR_DRIVERINTERNALERROR, "D3DERR_DRIVERINTERNALERROR", "The driver failed"},
    {D3DERR_NOTFOUND, "D3DERR_NOTFOUND", "There is no such item"},
    {D3DERR_MOREDATA, "D3DERR_MOREDATA", "The buffer is too small for the data"},
    {D3DERR_DEVICELOST, "D3DERR_DEVICELOST", "The device is lost and cannot be reset yet"},
    {D3DERR_DEVICENOTRESET, "D3DERR_DEVICENOTRESET", "The device is lost and can be reset"},
    {D3DERR_NOTAVAILABLE, "D3DERR_NOTAVAILABLE", "The device cannot do this"},
    {D3DERR_OUTOFVIDEOMEMORY, "D3DERR_OUTOFVIDEOMEMORY", "The device's memory is used up"},
    {D3DERR_INVALIDDEVICE, "D3DERR_INVALIDDEVICE", "There is no such device"},
    {D3DERR_INVALIDCALL, "D3DERR_INVALIDCALL", "The arguments or the state do not allow the call"},
    {D3DERR_DRIVERINVALIDCALL, "D3DERR_DRIVERINVALIDCALL", "The driver was called wrongly"},
    {D3DERR_WASSTILLDRAWING, "D3DERR_WASSTILLDRAWING", "The device is still at work on this"},
    {D3DXERR_CANNOTMODIFYINDEXBUFFER, "D3DXERR_CANNOTMODIFYINDEXBUFFER",
     "The index buffer may not be changed"},
    {D3DXERR_INVALIDMESH, "D3DXERR_INVALIDMESH", "The mesh is not valid"},
    {D3DXERR_CANNOTATTRSORT, "D3DXERR_CANNOTATTRSORT",
     "The mesh cannot be sorted by attribute here"},
    {D3DXERR_SKINNINGNOTSUPPORTED, "D3DXERR_SKINNINGNOTSUPPORTED",
     "The device cannot skin this mesh"},
    {D3DXERR_TOOMANYINFLUENCES, "D3DXERR_TOOMANYINFLUENCES", "Too many bones act on one vertex"},
    {D3DXERR_INVALIDDATA, "D3DXERR_INVALIDDATA", "The data is missing, damaged or not understood"},
    {D3DXERR_LOADEDMESHASNODATA, "D3DXERR_LOADEDMESHASNODATA", "The loaded mesh is empty"},
    {D3DXERR_DUPLICATENAMEDFRAGMENT, "D3DXERR_DUPLICATENAMEDFRAGMENT",
     "There is a fragment of that name already"},
    {D3DXERR_CANNOTREMOVELASTITEM, "D3DXERR_CANNOTREMOVELASTITEM",
     "The last item cannot be removed"},
    {E_NOTIMPL, "E_NOTIMPL", "The call is not implemented"},
    {E_NOINTERFACE, "E_NOINTERFACE", "The object does not have this interface"},
    {E_POINTER, "E_POINTER", "A pointer is null or invalid"},
    {E_FAIL, "E_FAIL", "The call failed for an unnamed reason"},
    {E_OUTOFMEMORY, "E_OUTOFMEMORY", "The memory is used up"},
    {E_INVALIDARG, "E_INVALIDARG", "An argument is not valid"},
};

const ResultName* FindResultName(HRESULT result)
{
    for (const ResultName& entry : kResultNames) {
        if (entry.code == result)
            return &entry;
    }
    return nullptr;
}

} // namespace

} // namespace headless

using namespace headless;

LPCSTR WINAPI DXGetErrorString9A(HRESULT result)
{
    const ResultName* entry = FindResultName(result);
    return entry ? entry->name : "Unknown";
}

LPCSTR WINAPI DXGetErrorDescription9A(HRESULT result)
{
    const ResultName* entry = FindResultName(result);
    return entry ? entry->description : "n/a";
}
