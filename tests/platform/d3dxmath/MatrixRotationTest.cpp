#include "tests/platform/d3dxmath/MathExpectations.h"

#include <cmath>

namespace {

constexpr float kQuarter = D3DX_PI / 2;
constexpr double kMatrixTolerance = 1e-6;

const D3DXVECTOR3 kX(1, 0, 0);
const D3DXVECTOR3 kY(0, 1, 0);
const D3DXVECTOR3 kZ(0, 0, 1);

D3DXVECTOR3 Turn(const D3DXVECTOR3& vector, const D3DXMATRIX& matrix)
{
    D3DXVECTOR3 turned;
    D3DXVec3TransformNormal(&turned, &vector, &matrix);
    return turned;
}

} // namespace

TEST(D3DXMatrixRotation, QuarterTurnsFollowTheLeftHand)
{
    D3DXMATRIX x, y, z;
    D3DXMatrixRotationX(&x, kQuarter);
    D3DXMatrixRotationY(&y, kQuarter);
    D3DXMatrixRotationZ(&z, kQuarter);
    const struct {
        const char* what;
        D3DXVECTOR3 from;
        D3DXMATRIX matrix;
        D3DXVECTOR3 to;
    } cases[] = {
        {"about x, y goes to z", kY, x, kZ},   {"about x, z goes to -y", kZ, x, -kY},
        {"about x, x stays", kX, x, kX},       {"about y, z goes to x", kZ, y, kX},
        {"about y, x goes to -z", kX, y, -kZ}, {"about y, y stays", kY, y, kY},
        {"about z, x goes to y", kX, z, kY},   {"about z, y goes to -x", kY, z, -kX},
        {"about z, z stays", kZ, z, kZ},
    };
    for (const auto& c : cases)
        ExpectNear(Turn(c.from, c.matrix), c.to, kMatrixTolerance, c.what);
}

TEST(D3DXMatrixRotation, SineAndCosineAreInTheirPlaces)
{
    D3DXMATRIX matrix;
    D3DXMatrixRotationX(&matrix, 0.5f);
    const auto s = static_cast<float>(std::sin(0.5));
    const auto c = static_cast<float>(std::cos(0.5));
    EXPECT_TRUE(matrix == D3DXMATRIX(1, 0, 0, 0, 0, c, s, 0, 0, -s, c, 0, 0, 0, 0, 1));
}

TEST(D3DXMatrixRotationAxis, ThirdOfATurnAboutTheDiagonalSwapsTheAxes)
{
    const D3DXVECTOR3 diagonal(1, 1, 1);
    D3DXMATRIX matrix;
    D3DXMatrixRotationAxis(&matrix, &diagonal, 2 * D3DX_PI / 3);
    ExpectNear(Turn(kX, matrix), kY, kMatrixTolerance);
    ExpectNear(Turn(kY, matrix), kZ, kMatrixTolerance);
    ExpectNear(Turn(kZ, matrix), kX, kMatrixTolerance);
}

TEST(D3DXMatrixRotationAxis, AgreesWithTheRotationsAboutTheAxes)
{
    D3DXMATRIX about, expected;
    D3DXMatrixRotationAxis(&about, &kX, 0.7f);
    D3DXMatrixRotationX(&expected, 0.7f);
    ExpectNear(about, expected, kMatrixTolerance);
    D3DXMatrixRotationAxis(&about, &kY, -0.7f);
    D3DXMatrixRotationY(&expected, -0.7f);
    ExpectNear(about, expected, kMatrixTolerance);
    D3DXMatrixRotationAxis(&about, &kZ, 4.0f);
    D3DXMatrixRotationZ(&expected, 4.0f);
    ExpectNear(about, expected, kMatrixTolerance);
}

TEST(D3DXMatrixRotationAxis, LengthOfTheAxisDoesNotMatter)
{
    const D3DXVECTOR3 unit(0, 0, 1);
    const D3DXVECTOR3 longer(0, 0, 8);
    D3DXMATRIX a, b;
    D3DXMatrixRotationAxis(&a, &unit, 0.3f);
    D3DXMatrixRotationAxis(&b, &longer, 0.3f);
    EXPECT_TRUE(a == b);
}

TEST(D3DXMatrixRotationAxis, QuirkAxisOfLengthZeroScalesByTheCosine)
{
    const D3DXVECTOR3 none(0, 0, 0);
    D3DXMATRIX matrix, expected;
    D3DXMatrixRotationAxis(&matrix, &none, 1.0f);
    const auto c = static_cast<float>(std::cos(1.0));
    D3DXMatrixScaling(&expected, c, c, c);
    ExpectNear(matrix, expected, 0);
}

TEST(D3DXMatrixRotationQuaternion, TurnsAsTheAngleSays)
{
    const float s = std::sqrt(0.5f); // sine and cosine of 45 degrees: a quarter turn
    D3DXMATRIX matrix;
    const D3DXQUATERNION aboutZ(0, 0, s, s);
    D3DXMatrixRotationQuaternion(&matrix, &aboutZ);
    ExpectNear(Turn(kX, matrix), kY, kMatrixTolerance);
    const D3DXQUATERNION diagonal(0.5f, 0.5f, 0.5f, 0.5f); // a third of a turn about (1, 1, 1)
    D3DXMatrixRotationQuaternion(&matrix, &diagonal);
    EXPECT_TRUE(matrix == D3DXMATRIX(0, 1, 0, 0, 0, 0, 1, 0, 1, 0, 0, 0, 0, 0, 0, 1));
}

TEST(D3DXMatrixRotationQuaternion, QuirkOtherLengthsAreNotNormalised)
{
    // m22 = 1 - 2 (x^2 + z^2) = -1, m23 = 2 (y z + x w) = 2, m32 = 2 (y z - x w) = -2, m33 = -1.
    const D3DXQUATERNION q(1, 0, 0, 1);
    D3DXMATRIX matrix;
    D3DXMatrixRotationQuaternion(&matrix, &q);
    EXPECT_TRUE(matrix == D3DXMATRIX(1, 0, 0, 0, 0, -1, 2, 0, 0, -2, -1, 0, 0, 0, 0, 1));
}

TEST(D3DXMatrixRotationYawPitchRoll, RollsPitchesAndYaws)
{
    D3DXMATRIX matrix, roll, pitch, yaw;
    D3DXMatrixRotationYawPitchRoll(&matrix, 0.3f, -0.8f, 2.0f);
    D3DXMatrixRotationZ(&roll, 2.0f);
    D3DXMatrixRotationX(&pitch, -0.8f);
    D3DXMatrixRotationY(&yaw, 0.3f);
    ExpectNear(matrix, roll * pitch * yaw, kMatrixTolerance);
}
