// Two lamps that light each pixel, so that highlights are round on coarse meshes, too.

float4x4 world : WORLD;
float4x4 worldInverseTranspose : WORLDINVERSETRANSPOSE;
float4x4 viewProjection : VIEWPROJECTION;
float4 eye : VIEWPOSITION;
float4 lamp[6] : OmniLightPosition;
float4 lampDiffuse[6] : OmniLightDiffCol;
float4 lampSpecular[6] : OmniLightSpecCol;
float4 lampAttenuation[6] : OmniLightAttenuation;
float4 surrounding : AmbientColor;
float4 diffuse : DiffuseMaterial;
float4 ambient : AmbientMaterial;
float4 specular : SpecularMaterial;
float power : SpecularPower;

technique Gloss
{
    pass Lit
    {
        AlphaBlendEnable = FALSE;
        AlphaTestEnable = FALSE;

        VertexShaderConstantF[0] = <viewProjection>;
        VertexShaderConstantF[4] = <world>;
        VertexShaderConstantF[8] = <worldInverseTranspose>;
        VertexShader = asm
        {
            vs_2_0
            dcl_position v0
            dcl_normal v1

            // To the world, and to the screen.
            mad r0, c4, v0.x, c7
            mad r0, c5, v0.y, r0
            mad r0, c6, v0.z, r0
            mov oT0, r0
            mad r1, c0, r0.x, c3
            mad r1, c1, r0.y, r1
            mad oPos, c2, r0.z, r1

            // The normal in the world.
            mul r2.xyz, c8, v1.x
            mad r2.xyz, c9, v1.y, r2
            mad r2.xyz, c10, v1.z, r2
            mov r2.w, c8.w
            mov oT1, r2
        };

        PixelShaderConstantF[1] = <eye>;
        PixelShaderConstantF[2] = <lamp[0]>;
        PixelShaderConstantF[3] = <lampAttenuation[0]>;
        PixelShaderConstantF[4] = lampDiffuse[0] * diffuse;
        PixelShaderConstantF[5] = lampSpecular[0] * specular;
        PixelShaderConstantF[6] = <lamp[1]>;
        PixelShaderConstantF[7] = <lampAttenuation[1]>;
        PixelShaderConstantF[8] = lampDiffuse[1] * diffuse;
        PixelShaderConstantF[9] = lampSpecular[1] * specular;
        PixelShaderConstantF[10] = surrounding * ambient;
        // A lamp that is not there attenuates by 0, which no light is divided by.
        PixelShaderConstantF[11] = float4(power, 1 - lamp[0].w, 1 - lamp[1].w, 0);
        PixelShader = asm
        {
            ps_2_0
            dcl t0.xyz
            dcl t1.xyz
            def c0, 0, 1, 0, 0

            nrm r0.xyz, t1
            add r1.xyz, c1, -t0
            nrm r2.xyz, r1           // to the eye
            mov r7.xyz, c10

            // The first lamp: r3 leads to it, r3.w is its distance, r4.x its strength there.
            add r3.xyz, c2, -t0
            dp3 r1.x, r3, r3
            rsq r1.y, r1.x
            mul r3.xyz, r3, r1.y
            mul r3.w, r1.x, r1.y
            mad r4.x, c3.y, r3.w, c3.x
            mad r4.x, c3.z, r1.x, r4.x
            add r4.x, r4.x, c11.y
            rcp r4.x, r4.x
            dp3 r4.y, r0, r3
            max r4.y, r4.y, c0.x
            add r3.xyz, r3, r2
            nrm r5.xyz, r3           // half way between the lamp and the eye
            dp3 r4.z, r0, r5
            max r4.z, r4.z, c0.x
            pow r4.w, r4.z, c11.x
            mul r4.y, r4.y, r4.x
            mul r4.w, r4.w, r4.x
            mad r7.xyz, c4, r4.y, r7
            mad r7.xyz, c5, r4.w, r7

            // The second lamp.
            add r3.xyz, c6, -t0
            dp3 r1.x, r3, r3
            rsq r1.y, r1.x
            mul r3.xyz, r3, r1.y
            mul r3.w, r1.x, r1.y
            mad r4.x, c7.y, r3.w, c7.x
            mad r4.x, c7.z, r1.x, r4.x
            add r4.x, r4.x, c11.z
            rcp r4.x, r4.x
            dp3 r4.y, r0, r3
            max r4.y, r4.y, c0.x
            add r3.xyz, r3, r2
            nrm r5.xyz, r3
            dp3 r4.z, r0, r5
            max r4.z, r4.z, c0.x
            pow r4.w, r4.z, c11.x
            mul r4.y, r4.y, r4.x
            mul r4.w, r4.w, r4.x
            mad r7.xyz, c8, r4.y, r7
            mad r7.xyz, c9, r4.w, r7

            mov r7.w, c0.y
            mov oC0, r7
        };
    }
}
