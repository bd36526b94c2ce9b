float time; float4x4 m; texture t;
sampler s = sampler_state { Texture = <t>; MinFilter = LINEAR; AddressU = CLAMP; };
technique fixed < string Script = "x"; > {
    pass p0 < string RenderTarget = "ScreenBuffer1"; > {
        VertexShader = NULL; CullMode = CCW; ZEnable = TRUE; AlphaBlendEnable = FALSE;
        Sampler[0] = <s>; Texture[1] = NULL; ColorOp[0] = MODULATE; ColorArg1[0] = TEXTURE | COMPLEMENT;
        WorldTransform[0] = mul(m, transpose(m)); TextureTransform[0] = float4x4(1,0,0,0, 0,1,0,0, frac(time * 0.1),0,1,0, 0,0,0,1);
        MaterialDiffuse = float4(1, 1, 1, 1) * sin(time).xxxx; LightType[1] = POINT; LightEnable[1] = TRUE;
        MaterialEmissive = {time, {0, 1}, 1}; ViewTransform = {1,0,0,0, 0,1,0,0, 0,0,1,0, 0,0,time,1};
        FogStart = <time>; Ambient = float3(0.5, 0, 1);
    }
}
