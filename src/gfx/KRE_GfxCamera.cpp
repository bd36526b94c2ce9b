#include "gfx/KRE_Gfx.h"
#include "scene/KRE_Camera.h"

// All three vectors are transformed as points, so a pivot's translation also moves the direction
// and the up vector.
void KRE_Gfx::SetCamera(const KRE_Camera& camera, const D3DXMATRIX* extraTM)
{
    const D3DXMATRIX correction = camera.CorrectionTM(extraTM);
    SetProjection(nearZ, farZ, camera.fov, -1.0f);
    D3DXVECTOR3 eye;
    D3DXVECTOR3 up;
    D3DXVECTOR3 direction;
    D3DXVec3TransformCoord(&eye, &camera.worldPosition, &correction);
    D3DXVec3TransformCoord(&up, &camera.up, &correction);
    D3DXVec3TransformCoord(&direction, &camera.direction, &correction);
    SetLookAt(eye, eye + direction, up);
}

void KRE_Gfx::SetLookAt(const D3DXVECTOR3& eye, const D3DXVECTOR3& at, const D3DXVECTOR3& up)
{
    D3DXMATRIX matrix;
    D3DXMatrixLookAtLH(&matrix, &eye, &at, &up);
    SetViewMatrix(matrix);
}
