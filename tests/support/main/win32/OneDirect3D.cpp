#include <windows.h>

#include <d3d9.h>

namespace {

/// The system's object, one for the process: making it takes 100 ms under Wine, a device on it 5.
class OneDirect3D {
public:
    ~OneDirect3D()
    {
        if (object)
            object->Release();
    }

    IDirect3D9* Take(UINT sdkVersion)
    {
        if (!object)
            object = Create(sdkVersion);
        if (object)
            object->AddRef();
        return object;
    }

private:
    static IDirect3D9* Create(UINT sdkVersion)
    {
        const HMODULE library = LoadLibraryA("d3d9.dll");
        if (!library)
            return nullptr;
        const FARPROC function = GetProcAddress(library, "Direct3DCreate9");
        if (!function)
            return nullptr;
        return reinterpret_cast<IDirect3D9*(WINAPI*)(UINT)>(reinterpret_cast<void*>(function))(
            sdkVersion);
    }

    IDirect3D9* object = nullptr;
};

} // namespace

/// Stands in for the function of the import library in every test program: all tests of a process
/// share one object, which has no state that a test could leave behind.
extern "C" IDirect3D9* WINAPI Direct3DCreate9(UINT sdkVersion)
{
    static OneDirect3D direct3D;
    return direct3D.Take(sdkVersion);
}
