#include "tests/support/CallText.h"

#include "tests/support/D3DNames.h"

namespace {

// Blanks between the values, brackets around all of them.
template <class Value, class Writer>
std::string ListText(const Value* values, UINT count, Writer write)
{
    if (!values)
        return "null";
    std::string text = "[";
    for (UINT i = 0; i < count; ++i)
        text += (i ? " " : "") + write(values[i]);
    return text + "]";
}

std::string LongsText(std::initializer_list<LONG> values)
{
    return ListText(values.begin(), static_cast<UINT>(values.size()),
                    [](LONG value) { return std::to_string(value); });
}

std::string ColorValueText(const D3DCOLORVALUE& color)
{
    return FloatsText(&color.r, 4);
}

std::string VectorText(const D3DVECTOR& vector)
{
    return FloatsText(&vector.x, 3);
}

bool IsIdentity(const D3DMATRIX& matrix)
{
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            if (matrix.m[row][column] != (row == column ? 1.0f : 0.0f))
                return false;
        }
    }
    return true;
}

std::string ChannelText(const char* name, const WORD* channel)
{
    return name + LongsText({channel[0], channel[1], channel[128], channel[255]});
}

} // namespace

std::string BoolText(BOOL value)
{
    return std::to_string(value);
}

std::string WindowText(HWND window)
{
    return window ? "window" : "null";
}

std::string DataText(const void* data)
{
    return data ? "data" : "null";
}

std::string RectText(const RECT* rect)
{
    return rect ? LongsText({rect->left, rect->top, rect->right, rect->bottom}) : "null";
}

std::string PointText(const POINT* point)
{
    return point ? LongsText({point->x, point->y}) : "null";
}

std::string ClearRectsText(DWORD count, const D3DRECT* rects)
{
    std::string text = std::to_string(count) + " rects";
    for (DWORD i = 0; rects && i < count; ++i)
        text += " " + LongsText({rects[i].x1, rects[i].y1, rects[i].x2, rects[i].y2});
    return text;
}

std::string FloatsText(const float* values, UINT count)
{
    return ListText(values, count, FloatText);
}

std::string IntsText(const int* values, UINT count)
{
    return ListText(values, count, [](int value) { return std::to_string(value); });
}

std::string MatrixText(const D3DMATRIX* matrix)
{
    if (!matrix)
        return "null";
    return IsIdentity(*matrix) ? "identity" : FloatsText(matrix->m[0], 16);
}

std::string MaterialText(const D3DMATERIAL9* material)
{
    if (!material)
        return "null";
    return "diffuse" + ColorValueText(material->Diffuse) + " ambient" +
           ColorValueText(material->Ambient) + " specular" + ColorValueText(material->Specular) +
           " emissive" + ColorValueText(material->Emissive) +
           " power=" + FloatText(material->Power);
}

std::string LightText(const D3DLIGHT9* light)
{
    if (!light)
        return "null";
    return LightTypeName(light->Type) + " diffuse" + ColorValueText(light->Diffuse) + " specular" +
           ColorValueText(light->Specular) + " ambient" + ColorValueText(light->Ambient) +
           " position" + VectorText(light->Position) + " direction" + VectorText(light->Direction) +
           " range=" + FloatText(light->Range) + " falloff=" + FloatText(light->Falloff) +
           " attenuation" + FloatsText(&light->Attenuation0, 3) +
           " theta=" + FloatText(light->Theta) + " phi=" + FloatText(light->Phi);
}

std::string ViewportText(const D3DVIEWPORT9* viewport)
{
    if (!viewport)
        return "null";
    return std::to_string(viewport->X) + " " + std::to_string(viewport->Y) + " " +
           std::to_string(viewport->Width) + " " + std::to_string(viewport->Height) + " " +
           FloatText(viewport->MinZ) + " " + FloatText(viewport->MaxZ);
}

std::string GammaRampText(const D3DGAMMARAMP* ramp)
{
    if (!ramp)
        return "null";
    return ChannelText("red", ramp->red) + " " + ChannelText("green", ramp->green) + " " +
           ChannelText("blue", ramp->blue);
}

std::string PresentParametersText(const D3DPRESENT_PARAMETERS* parameters)
{
    if (!parameters)
        return "null";
    const D3DPRESENT_PARAMETERS& p = *parameters;
    return "BackBufferWidth=" + std::to_string(p.BackBufferWidth) +
           " BackBufferHeight=" + std::to_string(p.BackBufferHeight) +
           " BackBufferFormat=" + FormatName(p.BackBufferFormat) +
           " BackBufferCount=" + std::to_string(p.BackBufferCount) +
           " MultiSampleType=" + MultiSampleName(p.MultiSampleType) +
           " MultiSampleQuality=" + std::to_string(p.MultiSampleQuality) +
           " SwapEffect=" + SwapEffectName(p.SwapEffect) +
           " hDeviceWindow=" + WindowText(p.hDeviceWindow) + " Windowed=" + BoolText(p.Windowed) +
           " EnableAutoDepthStencil=" + BoolText(p.EnableAutoDepthStencil) +
           " AutoDepthStencilFormat=" + FormatName(p.AutoDepthStencilFormat) +
           " Flags=" + PresentFlags(p.Flags) +
           " FullScreen_RefreshRateInHz=" + std::to_string(p.FullScreen_RefreshRateInHz) +
           " PresentationInterval=" + IntervalName(p.PresentationInterval);
}
