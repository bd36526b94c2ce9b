#pragma once

#include <d3dx9.h>
#include <gtest/gtest.h>
#include <string>

/// Compares `count` numbers with the expected ones, each within `tolerance`.
inline void ExpectNear(const float* actual, const float* expected, int count, double tolerance,
                       const std::string& what = "")
{
    for (int i = 0; i < count; ++i)
        EXPECT_NEAR(actual[i], expected[i], tolerance) << what << " number " << i;
}

inline void ExpectNear(const D3DXMATRIX& actual, const D3DXMATRIX& expected, double tolerance,
                       const std::string& what = "")
{
    ExpectNear(&actual.m[0][0], &expected.m[0][0], 16, tolerance, what);
}

inline void ExpectNear(const D3DXVECTOR3& actual, const D3DXVECTOR3& expected, double tolerance,
                       const std::string& what = "")
{
    ExpectNear(&actual.x, &expected.x, 3, tolerance, what);
}

inline void ExpectNear(const D3DXQUATERNION& actual, const D3DXQUATERNION& expected,
                       double tolerance, const std::string& what = "")
{
    ExpectNear(&actual.x, &expected.x, 4, tolerance, what);
}
