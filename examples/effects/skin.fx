// A skin that bends with its bones, by a vertex shader that blends their matrices, lit by up to two
// directional lights. Vertices store all of their weights but the last one, which is what is left of 1.

float4x4 viewProjection : VIEWPROJECTION;
float4x4 bones[8] : WORLDMATRIXARRAY;
int weights : NUMBLENDWEIGHTS = 1;
float4 direction[2] : DirectionalLightDirection;
float4 light[2] : DirectionalLightDiffCol;
float4 surrounding : AmbientColor;
float4 diffuse : DiffuseMaterial;
float4 ambient : AmbientMaterial;

technique Skin
{
    pass Lit
    {
        AlphaBlendEnable = FALSE;
        AlphaTestEnable = FALSE;
        SpecularEnable = FALSE;
        Texture[0] = NULL;
        ColorOp[0] = SELECTARG1;
        ColorArg1[0] = DIFFUSE;
        AlphaOp[0] = SELECTARG1;
        AlphaArg1[0] = DIFFUSE;
        ColorOp[1] = DISABLE;
        AlphaOp[1] = DISABLE;

        VertexShaderConstantF[0] = <viewProjection>;
        // Which weights are stored, and which is the last one.
        VertexShaderConstantF[4] = float4(weights > 1, weights > 2, weights > 3, 0);
        VertexShaderConstantF[5] = float4(weights == 1, weights == 2, weights == 3, weights == 4);
        VertexShaderConstantF[8] = <direction[0]>;
        VertexShaderConstantF[9] = light[0] * diffuse;
        VertexShaderConstantF[10] = <direction[1]>;
        VertexShaderConstantF[11] = light[1] * diffuse;
        VertexShaderConstantF[12] = surrounding * ambient;
        VertexShaderConstantF[16] = <bones[0]>;
        VertexShaderConstantF[20] = <bones[1]>;
        VertexShaderConstantF[24] = <bones[2]>;
        VertexShaderConstantF[28] = <bones[3]>;
        VertexShaderConstantF[32] = <bones[4]>;
        VertexShaderConstantF[36] = <bones[5]>;
        VertexShaderConstantF[40] = <bones[6]>;
        VertexShaderConstantF[44] = <bones[7]>;
        PixelShader = NULL;
        VertexShader = asm
        {
            vs_1_1
            dcl_position v0
            dcl_blendweight v1
            dcl_blendindices v2
            dcl_normal v3
            def c7, 1, 4, 0, 0

            // r0: four weights. r1: where the rows of their bones begin; 0 for a bone without weight.
            mul r0, v1, c4
            dp4 r1.x, r0, c7.x
            add r1.x, c7.x, -r1.x
            mad r0, r1.x, c5, r0
            mov r1, c4
            add r1, r1, c5
            mul r1, r1, v2
            mul r1, r1, c7.y

            // r4 to r7: the rows of the blended matrix.
            mov a0.x, r1.x
            mul r4, c[a0.x + 16], r0.x
            mul r5, c[a0.x + 17], r0.x
            mul r6, c[a0.x + 18], r0.x
            mul r7, c[a0.x + 19], r0.x
            mov a0.x, r1.y
            mad r4, c[a0.x + 16], r0.y, r4
            mad r5, c[a0.x + 17], r0.y, r5
            mad r6, c[a0.x + 18], r0.y, r6
            mad r7, c[a0.x + 19], r0.y, r7
            mov a0.x, r1.z
            mad r4, c[a0.x + 16], r0.z, r4
            mad r5, c[a0.x + 17], r0.z, r5
            mad r6, c[a0.x + 18], r0.z, r6
            mad r7, c[a0.x + 19], r0.z, r7
            mov a0.x, r1.w
            mad r4, c[a0.x + 16], r0.w, r4
            mad r5, c[a0.x + 17], r0.w, r5
            mad r6, c[a0.x + 18], r0.w, r6
            mad r7, c[a0.x + 19], r0.w, r7

            // To the world, and to the screen.
            mad r7, r4, v0.x, r7
            mad r7, r5, v0.y, r7
            mad r7, r6, v0.z, r7
            mul r8, c0, r7.x
            mad r8, c1, r7.y, r8
            mad r8, c2, r7.z, r8
            add oPos, r8, c3

            // The normal in the world.
            mul r4.xyz, r4, v3.x
            mad r4.xyz, r5, v3.y, r4
            mad r4.xyz, r6, v3.z, r4
            dp3 r4.w, r4, r4
            rsq r4.w, r4.w
            mul r4.xyz, r4, r4.w

            // Lights shine along their directions.
            dp3 r5.x, r4, -c8
            dp3 r5.y, r4, -c10
            max r5.xy, r5, c7.z
            mov r6, c12
            mad r6, c9, r5.x, r6
            mad r6, c11, r5.y, r6
            mov r6.w, c7.x
            mov oD0, r6
        };
    }
}
