float4 vs(float4 p : POSITION, uniform float k) : POSITION { if (k > 0) { return p; } return -p; }
technique t { pass { VertexShader = compile vs_1_1 vs(1); PixelShader = asm { ps_1_1 mov r0, v0 }; VertexShaderConstant[0] = {1,2}; } }
