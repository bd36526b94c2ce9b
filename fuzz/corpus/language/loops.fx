float4 list[8]; int n; float4x3 bones[4];
float f(float x, out float y) { y = x; for (int i = 0; i < 4; i++) { if (i > x) break; y += list[i].x; } return sin(y); }
float4 v(float4 q : POSITION) : POSITION { float3 r = 0; for (int i = 0; i < 3; i++) r += mul(q, bones[q.x + i]); return float4(r, 1); }
float4 p(float4 t : TEXCOORD0) : COLOR { float a[3] = {1, 2, 3}, y; a[t.x] = 4; [branch] if (t.y > 0) y = f(t.x, y); else discard; while (y < 3) { y++; if (y == 2) continue; } return y + a[1] % 2; }
