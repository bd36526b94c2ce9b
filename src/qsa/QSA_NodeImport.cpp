#include <cmath>

#include "base/Ascii.h"
#include "qsa/QSA_NewObject.h"
#include "qsa/QSA_NodeImport.h"
#include "scene/KRE_3dScene.h"

namespace {

constexpr double kRadiansPerDegree = 0.01745329238474369;
constexpr float kUnlimitedRange = 1.8446600037686313e19f; // the square still fits a float

struct LightTypeWord {
    const char* word;
    D3DLIGHTTYPE type;
};

constexpr LightTypeWord kLightTypes[] = {
    {"Target", D3DLIGHT_SPOT},
    {"TargetSpot", D3DLIGHT_SPOT},
    {"Directional", D3DLIGHT_DIRECTIONAL},
    {"Omni", D3DLIGHT_POINT},
};

/// The row of the largest magnitude in a column of a matrix; the last of equal ones.
int LargestRow(const D3DXMATRIX& matrix, int column)
{
    const float a = std::fabs(matrix.m[0][column]);
    const float b = std::fabs(matrix.m[1][column]);
    const float c = std::fabs(matrix.m[2][column]);
    if (b < a)
        return c < a ? 0 : 2;
    return c < b ? 1 : 2;
}

/// Passes the tokens of an object's block to `take`.
template <class Take>
int32_t ParseObject(QSA_SceneText& text, const KRE_3dObject& object, const Take& take)
{
    int32_t result = 0;
    WithMemoryFor(object, text, [&] { result = text.ParseBlock(take); });
    return result;
}

} // namespace

QSA_NodeImport::QSA_NodeImport(QSA_SceneText& sceneText, KRE_3dScene& target,
                               const QSA_KeyPartLimits& limits)
    : text(sceneText),
      scene(target),
      keyPartLimits(limits)
{}

int32_t QSA_NodeImport::ParseNodeKeyword(QSA_Token token, KRE_3dObject* object)
{
    switch (token) {
    case QSA_Token::NodeName:
        text.ReadQuoted(&object->name);
        return 0;
    case QSA_Token::NodeParent:
        text.ReadQuoted(&object->parentName);
        return 0;
    case QSA_Token::NodeTM:
        return ParseNodeTransform(object);
    case QSA_Token::PivotTM:
        return ParsePivot(object);
    case QSA_Token::TMAnimation:
        text.SkipTo('{');
        return ParseAnimation(object);
    default:
        return 0;
    }
}

int32_t QSA_NodeImport::ParseNode(int32_t kind)
{
    KRE_3dObject* object = AddObject(&scene.objects, text);
    object->objectKind = kind;
    return ParseObject(text, *object,
                       [&](QSA_Token token) { return ParseNodeKeyword(token, object); });
}

int32_t QSA_NodeImport::ParseCamera()
{
    KRE_Camera* camera = AddObject(&scene.cameras, text);
    return ParseObject(text, *camera, [&](QSA_Token token) {
        switch (token) {
        case QSA_Token::TargetNode:
            text.ReadQuoted(&camera->targetName);
            return 0;
        case QSA_Token::CameraSettings:
            text.SkipTo('{');
            return ParseCameraSettings(camera);
        default:
            return ParseNodeKeyword(token, camera);
        }
    });
}

int32_t QSA_NodeImport::ParseCameraSettings(KRE_Camera* camera)
{
    return text.ParseBlock([&](QSA_Token token) {
        if (token == QSA_Token::CameraFieldOfView)
            text.ReadFloat(&camera->fov);
        return 0;
    });
}

int32_t QSA_NodeImport::ParseLight()
{
    KRE_Light* light = AddObject(&scene.lights, text);
    light->lightMode = 0;
    light->light.Range = kUnlimitedRange;
    float color[3] = {};
    TokenBuffer typeWord = "";
    const int32_t result = ParseObject(text, *light, [&](QSA_Token token) {
        switch (token) {
        case QSA_Token::LightType:
            text.SkipSpace();
            text.ReadWord(typeWord);
            return 0;
        case QSA_Token::LightUseLight: {
            int32_t on = 0;
            text.ReadInt(&on);
            light->lightOn = on != 0 ? 1 : 0;
            return 0;
        }
        case QSA_Token::LightSettings:
            text.SkipTo('{');
            return ParseLightSettings(light, color);
        default:
            return ParseNodeKeyword(token, light);
        }
    });
    if (result == 0)
        FinishLight(light, typeWord);
    return result;
}

/// `color` lives for the whole light block: an intensity multiplies its current value.
int32_t QSA_NodeImport::ParseLightSettings(KRE_Light* light, float (&color)[3])
{
    float value = 0.0f;
    return text.ParseBlock([&](QSA_Token token) {
        switch (token) {
        case QSA_Token::LightColor:
            text.ReadVector(color);
            break;
        case QSA_Token::LightIntensity:
            text.ReadFloat(&value);
            for (float& part : color)
                part *= value;
            light->light.Diffuse = {color[0], color[1], color[2], 1.0f};
            light->light.Specular = light->light.Diffuse;
            light->light.Ambient = {0.0f, 0.0f, 0.0f, 0.0f};
            break;
        case QSA_Token::LightAspect:
            text.ReadFloat(&value);
            if (std::fabs(value) != 1.0f)
                text.Warning("Light aspect other than 1");
            break;
        case QSA_Token::LightHotSpot:
            text.ReadFloat(&value);
            light->light.Theta = static_cast<float>(value * kRadiansPerDegree);
            break;
        case QSA_Token::LightFalloff:
            text.ReadFloat(&value);
            light->light.Phi = static_cast<float>(value * kRadiansPerDegree);
            break;
        case QSA_Token::LightTDist:
            text.ReadFloat(&value);
            break;
        default:
            break;
        }
        return 0;
    });
}

void QSA_NodeImport::FinishLight(KRE_Light* light, const char* typeWord)
{
    light->light.Falloff = 1.0f;
    light->light.Attenuation0 = 1.0f;
    light->light.Attenuation1 = 0.0f;
    light->light.Attenuation2 = 0.0f;
    for (const LightTypeWord& known : kLightTypes) {
        if (CompareNoCase(typeWord, known.word) == 0) {
            light->light.Type = known.type;
            return;
        }
    }
    light->light.Type = D3DLIGHT_POINT;
    text.Warning("Unknown light type changed to omni");
}

// --- transform blocks

int32_t QSA_NodeImport::ParseTransform(QSA_Transform* transformOut)
{
    *transformOut = QSA_Transform();
    text.SkipTo('{');
    const int32_t result = text.ParseBlock([&](QSA_Token token) {
        switch (token) {
        case QSA_Token::TMRow0:
            ReadMatrixRow(&transformOut->initTM, 0);
            break;
        case QSA_Token::TMRow1:
            ReadMatrixRow(&transformOut->initTM, 1);
            break;
        case QSA_Token::TMRow2:
            ReadMatrixRow(&transformOut->initTM, 2);
            break;
        case QSA_Token::TMRow3:
            ReadMatrixRow(&transformOut->initTM, 3);
            break;
        case QSA_Token::TMPos:
            text.ReadVector(&transformOut->position);
            break;
        case QSA_Token::TMScale:
            text.ReadVector(&transformOut->scale);
            break;
        case QSA_Token::TMRotAngle:
            text.ReadFloat(&transformOut->rotationAngle);
            break;
        case QSA_Token::TMRotAxis:
            text.ReadVector(&transformOut->rotationAxis);
            transformOut->rotationAxis = -transformOut->rotationAxis;
            break;
        default:
            break;
        }
        return 0;
    });
    if (result == 0)
        FindMirroredAxes(transformOut);
    return result;
}

void QSA_NodeImport::ReadMatrixRow(D3DXMATRIX* matrix, int row)
{
    float values[3];
    text.ReadVector(values);
    for (int i = 0; i < 3; ++i)
        matrix->m[row][i] = values[i];
    matrix->m[row][3] = row == 3 ? 1.0f : 0.0f;
}

/// An axis is mirrored if the file's matrix points the opposite way along it to the matrix made of
/// scale, rotation and position.
void QSA_NodeImport::FindMirroredAxes(QSA_Transform* transform)
{
    D3DXMATRIX computed, rotation, translation;
    D3DXMatrixScaling(&computed, transform->scale.x, transform->scale.y, transform->scale.z);
    D3DXMatrixRotationAxis(&rotation, &transform->rotationAxis, transform->rotationAngle);
    D3DXMatrixTranslation(&translation, transform->position.x, transform->position.y,
                          transform->position.z);
    D3DXMatrixMultiply(&computed, &computed, &rotation);
    D3DXMatrixMultiply(&computed, &computed, &translation);

    float* const mirror[3] = {&transform->mirror.x, &transform->mirror.y, &transform->mirror.z};
    for (int column = 0; column < 3; ++column) {
        const int row = LargestRow(computed, column);
        const float inFile = transform->initTM.m[row][column];
        if (inFile == 0.0f) {
            text.Warning("Determinant in TM is zero.");
            return;
        }
        if (computed.m[row][column] / inFile < 0.0f)
            *mirror[column] = -1.0f;
    }
}

int32_t QSA_NodeImport::ParseNodeTransform(KRE_3dObject* object)
{
    QSA_Transform transform;
    const int32_t result = ParseTransform(&transform);
    object->initTM = transform.initTM;
    object->mirror = transform.mirror;
    object->position = transform.position;
    object->scale = transform.scale;
    object->rotationAxis = transform.rotationAxis;
    object->rotationAngle = transform.rotationAngle;
    return result;
}

int32_t QSA_NodeImport::ParsePivot(KRE_3dObject* object)
{
    QSA_Transform transform;
    const int32_t result = ParseTransform(&transform);
    object->pivotTM = transform.initTM;
    return result;
}
