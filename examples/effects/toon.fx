// A drawing: flat tones with an inked line around them. The line is the object once more, blown up along
// its normals and a little farther away. fParam1: width of the line in units of the world, vParam1: its
// colour, fParam2: light at which a half tone begins, fParam3: at which the full tone does.

float4x4 world : WORLD;
float4x4 worldInverseTranspose : WORLDINVERSETRANSPOSE;
float4x4 viewProjection : VIEWPROJECTION;
float4 eye : VIEWPOSITION;
float4 direction[2] : DirectionalLightDirection;
float4 diffuse : DiffuseMaterial;
float width : fParam1 = 1;
float halfTone : fParam2 = 0.05;
float fullTone : fParam3 = 0.5;
float4 ink : vParam1 = {0, 0, 0, 0};

technique Toon
{
    pass Line
    {
        AlphaBlendEnable = FALSE;
        AlphaTestEnable = FALSE;
        CullMode = NONE;

        VertexShaderConstantF[0] = <viewProjection>;
        VertexShaderConstantF[4] = <world>;
        VertexShaderConstantF[8] = <worldInverseTranspose>;
        VertexShaderConstantF[12] = <eye>;
        VertexShaderConstantF[13] = float4(width, 0.03, 0, 0);
        VertexShader = asm
        {
            vs_1_1
            dcl_position v0
            dcl_normal v1

            mul r0, c4, v0.x
            mad r0, c5, v0.y, r0
            mad r0, c6, v0.z, r0
            add r0, r0, c7
            mul r1.xyz, c8, v1.x
            mad r1.xyz, c9, v1.y, r1
            mad r1.xyz, c10, v1.z, r1
            dp3 r1.w, r1, r1
            rsq r1.w, r1.w
            mul r1.xyz, r1, r1.w
            mad r0.xyz, r1, c13.x, r0

            // Three hundredths farther from the eye: it sees no difference.
            add r2.xyz, r0, -c12
            mad r0.xyz, r2, c13.y, r0
            mul r3, c0, r0.x
            mad r3, c1, r0.y, r3
            mad r3, c2, r0.z, r3
            add oPos, r3, c3
        };
        PixelShaderConstantF[0] = float4(ink.xyz, 1);
        PixelShader = asm
        {
            ps_1_1
            mov r0, c0
        };
    }
    pass Tones
    {
        CullMode = NONE;
        VertexShader = asm
        {
            vs_1_1
            dcl_position v0
            dcl_normal v1

            mul r0, c4, v0.x
            mad r0, c5, v0.y, r0
            mad r0, c6, v0.z, r0
            add r0, r0, c7
            mul r1, c0, r0.x
            mad r1, c1, r0.y, r1
            mad r1, c2, r0.z, r1
            add oPos, r1, c3
            mul r2.xyz, c8, v1.x
            mad r2.xyz, c9, v1.y, r2
            mad r2.xyz, c10, v1.z, r2
            mov oT0.xyz, r2
        };
        PixelShaderConstantF[1] = <direction[0]>;
        PixelShaderConstantF[2] = <diffuse>;
        // Tones pass into each other within a twentieth of the light.
        PixelShaderConstantF[3] = float4(20, -20 * halfTone, -20 * fullTone, 0);
        PixelShader = asm
        {
            ps_2_0
            dcl t0.xyz
            def c4, 0.45, 0.25, 0.3, 1

            nrm r0.xyz, t0
            dp3 r1.x, r0, -c1
            mad_sat r1.y, r1.x, c3.x, c3.y
            mad_sat r1.z, r1.x, c3.x, c3.z
            mov r2.x, c4.x
            mad r2.x, r1.y, c4.y, r2.x
            mad r2.x, r1.z, c4.z, r2.x
            mul r3.xyz, c2, r2.x
            mov r3.w, c4.w
            mov oC0, r3
        };
    }
}
