#define COUNT 2
shared float4x4 wvp : WORLDVIEWPROJECTION;
float time : TIME < string UIName = "Time"; float step = 0.5; >;
float4 colors[COUNT] = {{1, 0, 0, 1}, {0, 1, 0, 1}};
texture wall : DIFFUSEMAP < string ResourceName = "wall.png"; >;
struct pair { float a; int2 b; } p = {1, 2, 3};
string s = "a" "\n";
bool b = true; int i = 0x1F; half3 h = 1.5h;
