#pragma once

// The records of the D3DX mathematics.

#include "d3d9.h"

struct D3DXVECTOR2 {
    D3DXVECTOR2() = default;
    D3DXVECTOR2(float xValue, float yValue) : x(xValue), y(yValue) {}

    float x, y;
};

struct D3DXVECTOR3 : D3DVECTOR {
    D3DXVECTOR3() = default;
    D3DXVECTOR3(const D3DVECTOR& vector) : D3DVECTOR(vector) {}
    D3DXVECTOR3(float xValue, float yValue, float zValue) : D3DVECTOR{xValue, yValue, zValue} {}
};

struct D3DXVECTOR4 {
    D3DXVECTOR4() = default;
    D3DXVECTOR4(float xValue, float yValue, float zValue, float wValue)
        : x(xValue),
          y(yValue),
          z(zValue),
          w(wValue)
    {}

    float x, y, z, w;
};

struct D3DXMATRIX : D3DMATRIX {
    D3DXMATRIX() = default;
    D3DXMATRIX(const D3DMATRIX& matrix) : D3DMATRIX(matrix) {}
};

struct D3DXQUATERNION {
    D3DXQUATERNION() = default;
    D3DXQUATERNION(float xValue, float yValue, float zValue, float wValue)
        : x(xValue),
          y(yValue),
          z(zValue),
          w(wValue)
    {}

    float x, y, z, w;
};

static_assert(sizeof(D3DXVECTOR2) == 8 && sizeof(D3DXVECTOR3) == 12 && sizeof(D3DXVECTOR4) == 16);
static_assert(sizeof(D3DXMATRIX) == 64 && sizeof(D3DXQUATERNION) == 16);
