matrix wvp : WORLDVIEWPROJECTION, world : WORLD, viewInv : VIEWINVERSE; float time : TIME;
struct Wave { float freq; float amp; float phase; float2 dir; };
#define NWAVES 2
Wave wave[NWAVES] = { { 1.0, 1.0, 0.5, -1, 0 }, { 2.0, 0.5, 1.7, -0.7, 0.7 } };
textureCUBE env < string ResourceName = "sky.dds"; >; texture norm : NORMALMAP;
samplerCUBE Env = sampler_state { Texture = <env>; }; sampler2D Norm = sampler_state { Texture = <norm>; };
float evaluateWave(Wave w, float2 pos, float t) { return w.amp * sin(dot(w.dir, pos) * w.freq + t * w.phase); }
float evaluateWaveDeriv(Wave w, float2 pos, float t) { return w.freq * w.amp * cos(dot(w.dir, pos) * w.freq + t * w.phase); }
struct V2F { float4 Position : POSITION; float2 bump[3] : TEXCOORD0; float3x3 tbn : TEXCOORD3; float3 eye : TEXCOORD6; };
V2F WaterVS(float4 Position : POSITION, float2 TexCoord : TEXCOORD0) {
  V2F OUT; float4 P = Position; float ddx = 0.0, ddy = 0.0;
  for (int i = 0; i < NWAVES; i++) { P.y += evaluateWave(wave[i], P.xz, time); float deriv = evaluateWaveDeriv(wave[i], P.xz, time); ddx += deriv * wave[i].dir.x; ddy += deriv * wave[i].dir.y; }
  float3 B = float3(1, ddx, 0), T = float3(0, ddy, 1), N = float3(-ddx, 1, -ddy);
  OUT.Position = mul(P, wvp);
  float2 s = float2(8, 4); float cycle = fmod(time, 100.0);
  OUT.bump[0] = TexCoord * s + cycle * float2(0.05, 0); OUT.bump[1] = TexCoord * s * 2 + cycle * 0.1; OUT.bump[2] = TexCoord * s * 4 + cycle * 0.2;
  float3x3 objToTangent; objToTangent[0] = normalize(T); objToTangent[1] = normalize(B); objToTangent[2] = normalize(N);
  OUT.tbn = mul(objToTangent, (float3x3)world);
  OUT.eye = viewInv[3].xyz - mul(P, world).xyz;
  return OUT; }
float4 OceanPS(V2F IN) : COLOR {
  float4 t0 = tex2D(Norm, IN.bump[0]) * 2 - 1, t1 = tex2D(Norm, IN.bump[1]) * 2 - 1, t2 = tex2D(Norm, IN.bump[2]) * 2 - 1;
  float3 Nt = t0.xyz + t1.xyz + t2.xyz; float3 N = normalize(mul(Nt, IN.tbn)); float3 E = normalize(IN.eye);
  float3 R = reflect(-E, N); float4 reflection = texCUBE(Env, R);
  float facing = 1.0 - max(dot(E, N), 0); float fresnel = 0.02 + 0.98 * pow(facing, 5);
  float4 deep = float4(0, 0, 0.1, 1), shallow = float4(0, 0.5, 0.5, 1);
  return lerp(deep, shallow, facing) + reflection * fresnel; }
technique Water { pass { VertexShader = compile vs_2_0 WaterVS(); PixelShader = compile ps_2_0 OceanPS(); } }
