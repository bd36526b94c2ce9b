// Water in wind: two waves move the surface itself, a picture of small waves that drifts in two directions
// bends its normals, and it mirrors the sky the more, the flatter the eye looks along it.
// fParam1: height of the waves in units of the world, fParam2: their number per unit,
// vParam1: colour of the depth, vParam2: colour of the sky above, vParam3: of the sky at the horizon.

float4x4 world : WORLD;
float4x4 viewProjection : VIEWPROJECTION;
float4 eye : VIEWPOSITION;
float4 direction[2] : DirectionalLightDirection;
float4 light[2] : DirectionalLightSpecCol;
float time : GAMETIME;
float height : fParam1 = 1;
float number : fParam2 = 0.1;
float4 depth : vParam1 = {0.02, 0.12, 0.15, 0};
float4 above : vParam2 = {0.35, 0.55, 0.85, 0};
float4 horizon : vParam3 = {0.9, 0.85, 0.8, 0};
texture waves < string ResourceName = "waves.png"; >;

technique Pond
{
    pass Surface
    {
        AlphaBlendEnable = FALSE;
        AlphaTestEnable = FALSE;
        Texture[0] = <waves>;
        AddressU[0] = WRAP;
        AddressV[0] = WRAP;
        MinFilter[0] = LINEAR;
        MagFilter[0] = LINEAR;
        MipFilter[0] = NONE;

        VertexShaderConstantF[0] = <viewProjection>;
        VertexShaderConstantF[4] = <world>;
        // Each wave: its direction as whole waves per unit, and where it is now.
        VertexShaderConstantF[8] = float4(0.8 * number, 0.6 * number, 0, frac(0.25 * time));
        VertexShaderConstantF[9] = float4(-0.5 * number, 1.2 * number, 0, frac(0.4 * time));
        // Heights, and the slopes that they make: 2 pi times height and waves per unit.
        VertexShaderConstantF[10] = float4(height, 0.5 * height, 6.2831853 * height, 3.1415927 * height);
        // Where the small waves are.
        VertexShaderConstantF[11] = float4(frac(0.05 * time), frac(0.02 * time),
                                           frac(-0.04 * time), frac(0.06 * time));
        VertexShader = asm
        {
            vs_2_0
            dcl_position v0
            dcl_texcoord v1
            def c12, 6.2831853, -3.1415927, 0.5, 1
            def c13, -1.5500992e-06, -2.1701389e-05, 0.0026041667, 0.00026041668
            def c14, -0.020833334, -0.125, 1, 0.5
            def c15, 2, 3, 0, 0

            mad r0, c4, v0.x, c7
            mad r0, c5, v0.y, r0
            mad r0, c6, v0.z, r0

            // r1: sine and cosine of the first wave here, r2: of the second one.
            dp3 r3.x, r0, c8
            add r3.x, r3.x, c8.w
            add r3.x, r3.x, c12.z
            frc r3.x, r3.x
            mad r3.x, r3.x, c12.x, c12.y
            sincos r1.xy, r3.x, c13, c14
            dp3 r3.x, r0, c9
            add r3.x, r3.x, c9.w
            add r3.x, r3.x, c12.z
            frc r3.x, r3.x
            mad r3.x, r3.x, c12.x, c12.y
            sincos r2.xy, r3.x, c13, c14
            mad r0.z, r1.y, c10.x, r0.z
            mad r0.z, r2.y, c10.y, r0.z

            mad r4, c0, r0.x, c3
            mad r4, c1, r0.y, r4
            mad oPos, c2, r0.z, r4
            mov oT2.xyz, r0

            // The normal leans against the slopes.
            mul r5.x, r1.x, c10.z
            mul r5.y, r2.x, c10.w
            mul r6.xyz, c8, -r5.x
            mad r6.xyz, c9, -r5.y, r6
            mov r6.z, c12.w
            mov oT3.xyz, r6

            mad oT0.xy, v1, c15.x, c11
            mov r7.xy, c11.zwzw
            mad oT1.xy, v1, c15.y, r7
        };

        PixelShaderConstantF[1] = <eye>;
        PixelShaderConstantF[2] = <direction[0]>;
        PixelShaderConstantF[3] = <light[0]>;
        PixelShaderConstantF[4] = <depth>;
        PixelShaderConstantF[5] = <above>;
        PixelShaderConstantF[6] = <horizon>;
        PixelShader = asm
        {
            ps_2_0
            dcl t0.xy
            dcl t1.xy
            dcl t2.xyz
            dcl t3.xyz
            dcl_2d s0
            def c0, 0.25, -0.25, 0, 1
            def c7, 2, 150, 0.98, 0.02

            texld r0, t0, s0
            texld r1, t1, s0
            add r0.xy, r0, r1
            mad r0.xy, r0, c0.x, c0.y
            add r0.xy, r0, t3
            mov r0.z, t3.z
            nrm r1.xyz, r0           // of the water
            add r2.xyz, c1, -t2
            nrm r3.xyz, r2           // to the eye

            // What the eye sees mirrored.
            dp3 r4.x, r1, r3
            max r4.x, r4.x, c0.z
            mul r4.y, r4.x, c7.x
            mad r5.xyz, r1, r4.y, -r3
            mov_sat r5.w, r5.z
            lrp r6.xyz, r5.w, c5, c6

            // The share of it: 0.02 straight from above, and all of it along the water.
            add r4.z, c0.w, -r4.x
            mul r4.w, r4.z, r4.z
            mul r4.w, r4.w, r4.w
            mul r4.w, r4.w, r4.z
            mad r4.w, r4.w, c7.z, c7.w
            mov r8.xyz, c4
            lrp r7.xyz, r4.w, r6, r8

            // The sun in it.
            dp3 r4.y, r5, -c2
            max r4.y, r4.y, c0.z
            pow r4.z, r4.y, c7.y
            mad r7.xyz, c3, r4.z, r7
            mov r7.w, c0.w
            mov oC0, r7
        };
    }
}
