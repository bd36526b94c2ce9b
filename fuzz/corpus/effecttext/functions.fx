float time = 0.5;
struct Wave { float height, speed; };
Wave wave = { 0.5, 2 };
float list[3] = { 1, 2, 3 };
float at(int index, inout float sum)
{
    sum += list[index];
    return sum * wave.height;
}
float3 rise(float3 colour, float limit = 1)
{
    float sum = 0;
    for (int i = 0; i < 3; i++) {
        if (sum > limit)
            break;
        at(i, sum);
    }
    switch ((int)limit) {
    case 0: return colour;
    default: sum = sin(time * wave.speed) + pow(sum, 2);
    }
    return normalize(colour) * sum + sqrt(colour);
}
technique t { pass { MaterialDiffuse = float4(rise(float3(0.1, 0.2, time)), 1);
    FogEnd = rise(time).x; } }
