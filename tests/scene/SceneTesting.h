#pragma once

#include <cmath>
#include <string>

#include <gmock/gmock.h>

#include "base/KRE_Base.h"
#include "base/ResetLogForTests.h"
#include "scene/KRE_3dObject.h"
#include "tests/support/RaisedBy.h"
#include "tests/support/ScratchDirectory.h"

inline constexpr float kPi = 3.14159265f;

/// A fresh log for one test.
class LogScope {
public:
    LogScope() { ResetLogForTests(); }
    ~LogScope() { ResetLogForTests(); }
    LogScope(const LogScope&) = delete;
    LogScope& operator=(const LogScope&) = delete;

    /// Empty if nothing was reported.
    std::string Text() const
    {
        return directory.Has("logfile.txt") ? directory.Read("logfile.txt") : "";
    }

private:
    ScratchDirectory directory;
};

inline void ExpectVector(const D3DXVECTOR3& actual, float x, float y, float z,
                         const std::string& what = "", float tolerance = 1e-5f)
{
    EXPECT_NEAR(actual.x, x, tolerance) << what;
    EXPECT_NEAR(actual.y, y, tolerance) << what;
    EXPECT_NEAR(actual.z, z, tolerance) << what;
}

/// Compares the components, sign included.
inline void ExpectQuaternion(const D3DXQUATERNION& actual, double x, double y, double z, double w,
                             const std::string& what = "", double tolerance = 2e-6)
{
    EXPECT_NEAR(actual.x, x, tolerance) << what;
    EXPECT_NEAR(actual.y, y, tolerance) << what;
    EXPECT_NEAR(actual.z, z, tolerance) << what;
    EXPECT_NEAR(actual.w, w, tolerance) << what;
}

/// A turn about z by `angle` is (0, 0, sin(angle / 2), cos(angle / 2)).
inline void ExpectTurnAboutZ(const D3DXQUATERNION& actual, double angle,
                             const std::string& what = "", double tolerance = 2e-6)
{
    ExpectQuaternion(actual, 0, 0, std::sin(angle / 2), std::cos(angle / 2), what, tolerance);
}

inline D3DXQUATERNION TurnAboutZ(double angle)
{
    return {0, 0, static_cast<float>(std::sin(angle / 2)), static_cast<float>(std::cos(angle / 2))};
}

inline void ExpectMatrix(const D3DXMATRIX& actual, const float (&expected)[4][4],
                         const std::string& what = "", float tolerance = 1e-5f)
{
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
            EXPECT_NEAR(actual.m[row][column], expected[row][column], tolerance)
                << what << " row " << row << " column " << column;
}

/// The product of two matrices in double precision.
inline void ExpectProduct(const D3DXMATRIX& actual, const D3DXMATRIX& a, const D3DXMATRIX& b,
                          const std::string& what = "", double tolerance = 1e-4)
{
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            double sum = 0;
            for (int i = 0; i < 4; ++i)
                sum += static_cast<double>(a.m[row][i]) * b.m[i][column];
            EXPECT_NEAR(actual.m[row][column], sum, tolerance)
                << what << " row " << row << " column " << column;
        }
    }
}

inline KRE_PosKeyData PosKey(float time, float x, float y = 0, float z = 0)
{
    KRE_PosKeyData key;
    key.time = time;
    key.value = {x, y, z};
    return key;
}

inline KRE_ScaleKeyData ScaleKey(float time, float x, float y, float z)
{
    KRE_ScaleKeyData key;
    key.time = time;
    key.value = {x, y, z};
    return key;
}

/// A turn about z by `angle`, relative to the previous key.
inline KRE_RotKeyData RotKey(float time, float angle)
{
    KRE_RotKeyData key;
    key.time = time;
    key.axis = {0, 0, 1};
    key.angle = angle;
    return key;
}
