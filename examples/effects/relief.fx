// Stones that stand out from a wall by a picture of their normals: red is their slope along the wall to the
// right, green upward, blue outward, each from 0 for -1 to 255 for 1. The wall stands upright: its own
// directions are found from its normal and the world's upward axis. fParam1: how steep the slopes are.

float4x4 world : WORLD;
float4x4 worldInverseTranspose : WORLDINVERSETRANSPOSE;
float4x4 viewProjection : VIEWPROJECTION;
float4 eye : VIEWPOSITION;
float4 direction[2] : DirectionalLightDirection;
float4 light[2] : DirectionalLightDiffCol;
float4 surrounding : AmbientColor;
float4 specular : SpecularMaterial;
float power : SpecularPower;
float steepness : fParam1 = 1;
texture picture : DIFFUSEMAP;
texture slopes < string ResourceName = "stones.png"; >;

sampler colours = sampler_state
{
    Texture = <picture>;
    AddressU = WRAP;
    AddressV = WRAP;
    MinFilter = LINEAR;
    MagFilter = LINEAR;
    MipFilter = NONE;
};
sampler normals = sampler_state
{
    Texture = <slopes>;
    AddressU = WRAP;
    AddressV = WRAP;
    MinFilter = LINEAR;
    MagFilter = LINEAR;
    MipFilter = NONE;
};

technique Relief
{
    pass Lit
    {
        AlphaBlendEnable = FALSE;
        AlphaTestEnable = FALSE;
        Sampler[0] = <colours>;
        Sampler[1] = <normals>;

        VertexShaderConstantF[0] = <viewProjection>;
        VertexShaderConstantF[4] = <world>;
        VertexShaderConstantF[8] = <worldInverseTranspose>;
        VertexShader = asm
        {
            vs_2_0
            dcl_position v0
            dcl_normal v1
            dcl_texcoord v2
            def c12, 0, 1, -1, 0

            // To the world, and to the screen.
            mad r0, c4, v0.x, c7
            mad r0, c5, v0.y, r0
            mad r0, c6, v0.z, r0
            mad r1, c0, r0.x, c3
            mad r1, c1, r0.y, r1
            mad oPos, c2, r0.z, r1
            mov oT0.xy, v2
            mov oT1.xyz, r0

            // r2: outward, r3: to the right, r4: upward along the wall.
            mul r2.xyz, c8, v1.x
            mad r2.xyz, c9, v1.y, r2
            mad r2.xyz, c10, v1.z, r2
            nrm r5.xyz, r2
            mul r3.xyz, r5.yxz, c12.zyx
            nrm r6.xyz, r3
            crs r4.xyz, r5, r6
            mov oT2.xyz, r5
            mov oT3.xyz, r6
            mov oT4.xyz, r4
        };

        PixelShaderConstantF[1] = <eye>;
        PixelShaderConstantF[2] = <direction[0]>;
        PixelShaderConstantF[3] = <light[0]>;
        PixelShaderConstantF[4] = light[0] * specular;
        PixelShaderConstantF[5] = <surrounding>;
        PixelShaderConstantF[6] = float4(power, steepness, 0, 0);
        PixelShader = asm
        {
            ps_2_0
            dcl t0.xy
            dcl t1.xyz
            dcl t2.xyz
            dcl t3.xyz
            dcl t4.xyz
            dcl_2d s0
            dcl_2d s1
            def c0, 2, -1, 0, 1

            texld r0, t0, s0
            texld r1, t0, s1
            mad r1.xyz, r1, c0.x, c0.y
            mul r1.xy, r1, c6.y
            mul r2.xyz, t3, r1.x
            mad r2.xyz, t4, r1.y, r2
            mad r2.xyz, t2, r1.z, r2
            nrm r3.xyz, r2           // of the stone

            dp3 r4.x, r3, -c2
            max r4.x, r4.x, c0.z
            mov r5.xyz, c5
            mad r5.xyz, c3, r4.x, r5
            mul r5.xyz, r5, r0

            add r6.xyz, c1, -t1
            nrm r7.xyz, r6
            add r6.xyz, r7, -c2
            nrm r7.xyz, r6           // half way between the light and the eye
            dp3 r4.y, r3, r7
            max r4.y, r4.y, c0.z
            pow r4.z, r4.y, c6.x
            mad r5.xyz, c4, r4.z, r5
            mov r5.w, c0.w
            mov oC0, r5
        };
    }
}
