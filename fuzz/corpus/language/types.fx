typedef float4 Colour; struct A { float2 x; struct B { float y[2]; } b; };
static const float k[] = {1, 2, 3}; row_major float3x3 m;
void g(inout float3 a, uniform bool b = true) { a = b ? a.zyx : -a; }
float4 v(float4 q : POSITION) : POSITION { q.xyz = mul(m, q.xyz); g(q.xyz); return q; }
Colour p() : COLOR { int i = 7 / 2 << 1; float2x2 t = {1, 2, 3, 4}; t._m01_m10 = t._21_12; return Colour(t[0], k[i % 3], determinant(m)); }
