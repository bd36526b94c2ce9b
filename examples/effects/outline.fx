// A line around an object, of the same width at any distance. The object is drawn in the colour of
// the ink, a little farther away and moved by the line's width in eight directions; what sticks out
// from behind the object itself is the line. fParam1: its width in pixels, vParam1: its colour.

float4x4 view : VIEW;
float4x4 projection : PROJECTION;
float4 pixel : InvViewPortDim;
float4 diffuse : DiffuseMaterial;
float4 ambient : AmbientMaterial;
float4 specular : SpecularMaterial;
float power : SpecularPower;
float width : fParam1 = 2;
float4 ink : vParam1 = {0, 0, 0, 0};

// The screen is 2 wide and 2 high in clip space, where a step has to be as long as w says.
#define STEP(right, up) \
    ProjectionTransform = mul(projection, float4x4(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, \
                                                   2 * (right) * width * pixel.x, \
                                                   2 * (up) * width * pixel.y, 0, 1));

technique Outline
{
    pass East
    {
        Lighting = FALSE;
        AlphaBlendEnable = FALSE;
        SpecularEnable = FALSE;
        // Two hundredths farther away and as much larger: the camera sees no difference.
        ViewTransform = mul(view, float4x4(1.02, 0, 0, 0, 0, 1.02, 0, 0, 0, 0, 1.02, 0,
                                           0, 0, 0, 1));
        Texture[0] = NULL;
        TextureFactor = <ink>;
        ColorOp[0] = SELECTARG1;
        ColorArg1[0] = TFACTOR;
        AlphaOp[0] = SELECTARG1;
        AlphaArg1[0] = TFACTOR;
        ColorOp[1] = DISABLE;
        AlphaOp[1] = DISABLE;
        STEP(1, 0)
    }
    pass NorthEast { STEP(0.7, 0.7) }
    pass North { STEP(0, 1) }
    pass NorthWest { STEP(-0.7, 0.7) }
    pass West { STEP(-1, 0) }
    pass SouthWest { STEP(-0.7, -0.7) }
    pass South { STEP(0, -1) }
    pass SouthEast { STEP(0.7, -0.7) }
    pass Object
    {
        ViewTransform = <view>;
        ProjectionTransform = <projection>;
        Lighting = TRUE;
        SpecularEnable = TRUE;
        MaterialDiffuse = <diffuse>;
        MaterialAmbient = <ambient>;
        MaterialSpecular = <specular>;
        MaterialEmissive = {0, 0, 0, 1};
        MaterialPower = <power>;
        ColorArg1[0] = DIFFUSE;
        AlphaArg1[0] = DIFFUSE;
    }
}
