#include <algorithm>
#include <cmath>

#include "base/LoadInHand.h"
#include "base/WithMemory.h"
#include "qsa/QSA_NodeImport.h"
#include "scene/KRE_3dScene.h"

namespace {

constexpr float kBeforeAllTimes = -89999998976.0f; // ticks

// The constants of the format, as the floats that exporters compare with.
constexpr double kHalfTurn = 3.141592f; // radians
constexpr double kFullTurn = 6.283184f;

/// A file may have one more part for each few bytes of its text. The line of a rotation key is longer
/// than that, so turning wheels are never refused and a small file stays cheap.
constexpr int32_t kBytesPerKeyPart = 8;

bool IsFinite(const KRE_RotKeyData& key)
{
    return std::isfinite(key.time) && std::isfinite(key.angle) && std::isfinite(key.axis.x) &&
           std::isfinite(key.axis.y) && std::isfinite(key.axis.z);
}

/// Scales the tangents of a leading run of Bezier keys by the distance to their neighbours, still
/// in ticks, and converts all times to seconds.
template <class Key>
void FinishKeyList(KRE_KeyList<Key>* keys, const QSA_TimeScale& time)
{
    // One pass for both: the keys of a long animation do not fit the cache.
    bool isLeadingRun = true;
    float previousTicks = 0.0f;
    for (Key* key = keys->Head(); key; key = key->next) {
        const float ticks = key->time;
        isLeadingRun = isLeadingRun && key->interpolation == kKeyBezier;
        if (isLeadingRun && key->prev)
            key->inTangent *= ticks - previousTicks;
        if (isLeadingRun && key->next)
            key->outTangent *= key->next->time - ticks;
        key->time = time.TicksToSeconds(ticks);
        previousTicks = ticks;
    }
    keys->TimesChanged();
}

void FinishKeysOf(KRE_3dObject* object, const QSA_TimeScale& time)
{
    const LoadScope inHand(object->name);
    FinishKeyList(&object->posKeys, time);
    FinishKeyList(&object->scaleKeys, time);
    for (KRE_RotKeyData* key = object->rotKeys.Head(); key; key = key->next) {
        key->time = time.TicksToSeconds(key->time);
        if (key->interpolation == kKeyTcb)
            ComputeInnerControls(*key);
    }
    object->rotKeys.TimesChanged();
    WithMemory([&] { object->BuildKeyIndex(); },
               [&] { object->Error("Not enough memory for the scene"); });
}

} // namespace

int32_t QSA_NodeImport::ParseAnimation(KRE_3dObject* object)
{
    return text.ParseBlock([&](QSA_Token token) {
        switch (token) {
        case QSA_Token::ControlPos:
            text.SkipTo('{');
            return ParsePositionKeys(object);
        case QSA_Token::ControlRot:
            text.SkipTo('{');
            return ParseRotationKeys(object);
        case QSA_Token::ControlScale:
            text.SkipTo('{');
            return ParseScaleKeys(object);
        default:
            return 0;
        }
    });
}

int32_t QSA_NodeImport::ParsePositionKeys(KRE_3dObject* object)
{
    QSA_TextCursor cursor = text.Cursor();
    for (;;) {
        QSA_Token token = QSA_Token::BezierPosKey;
        if (cursor.TakeKeyword("*CONTROL_POS_SAMPLE"))
            token = QSA_Token::LinearPosKey;
        else if (!cursor.TakeKeyword("*CONTROL_BEZIER_POS_KEY"))
            token = text.NextToken(cursor);

        if (token == QSA_Token::BlockEnd || token == QSA_Token::EndOfFile)
            return token == QSA_Token::EndOfFile ? 1 : 0;
        if (token != QSA_Token::LinearPosKey && token != QSA_Token::BezierPosKey)
            continue;
        KRE_PosKeyData key;
        text.ReadTimed(cursor, &key.time, &key.value);
        if (token == QSA_Token::BezierPosKey) {
            text.ReadVector(cursor, &key.inTangent);
            text.ReadVector(cursor, &key.outTangent);
            key.interpolation = kKeyBezier;
        }
        object->AddPosKey(key);
    }
}

/// Mirroring belongs to the node, so the factors are stored without their sign. Tangents are not
/// part of the format.
int32_t QSA_NodeImport::ParseScaleKeys(KRE_3dObject* object)
{
    QSA_TextCursor cursor = text.Cursor();
    for (;;) {
        QSA_Token token = QSA_Token::BezierScaleKey;
        if (cursor.TakeKeyword("*CONTROL_SCALE_SAMPLE"))
            token = QSA_Token::LinearScaleKey;
        else if (!cursor.TakeKeyword("*CONTROL_BEZIER_SCALE_KEY"))
            token = text.NextToken(cursor);

        if (token == QSA_Token::BlockEnd || token == QSA_Token::EndOfFile)
            return token == QSA_Token::EndOfFile ? 1 : 0;
        if (token != QSA_Token::LinearScaleKey && token != QSA_Token::BezierScaleKey)
            continue;
        KRE_ScaleKeyData key;
        text.ReadTimed(cursor, &key.time, &key.value);
        key.value = {std::fabs(key.value.x), std::fabs(key.value.y), std::fabs(key.value.z)};
        key.interpolation = token == QSA_Token::BezierScaleKey ? kKeyBezier : kKeyLinear;
        object->AddScaleKey(key);
    }
}

int32_t QSA_NodeImport::ParseRotationKeys(KRE_3dObject* object)
{
    float highestTime = kBeforeAllTimes;
    QSA_TextCursor cursor = text.Cursor();
    for (;;) {
        QSA_Token token = QSA_Token::TcbRotKey;
        if (cursor.TakeKeyword("*CONTROL_ROT_SAMPLE"))
            token = QSA_Token::LinearRotKey;
        else if (!cursor.TakeKeyword("*CONTROL_TCB_ROT_KEY"))
            token = text.NextToken(cursor);

        if (token == QSA_Token::BlockEnd || token == QSA_Token::EndOfFile)
            return token == QSA_Token::EndOfFile ? 1 : 0;
        if (token == QSA_Token::LinearRotKey || token == QSA_Token::TcbRotKey)
            ParseRotationKey(cursor, token, object, &highestTime);
    }
}

void QSA_NodeImport::ParseRotationKey(QSA_TextCursor& cursor, QSA_Token token, KRE_3dObject* object,
                                      float* highestTime)
{
    KRE_RotKeyData key;
    float values[5]; // time, axis, angle
    const bool isRow = TakeRow(cursor, values);
    if (!isRow)
        text.ReadFloat(cursor, &values[0]);
    key.time = values[0];
    if (key.time < *highestTime) {
        text.Warning("Skipped wrong order rotation key in file: %s", text.FileName());
        return;
    }
    *highestTime = key.time;
    if (!isRow) {
        D3DXVECTOR3 axis;
        text.ReadVector(cursor, &axis);
        std::copy_n(&axis.x, 3, values + 1);
        text.ReadFloat(cursor, &values[4]);
    }
    key.axis = {-values[1], -values[2], -values[3]};
    key.angle = values[4];
    if (token == QSA_Token::TcbRotKey) {
        key.interpolation = kKeyTcb;
        for (float* value : {&key.tension, &key.continuity, &key.bias, &key.easeIn, &key.easeOut})
            text.ReadFloat(cursor, value);
    } else if (key.angle > kHalfTurn && key.angle < kFullTurn) {
        key.angle = static_cast<float>(key.angle - kFullTurn);
    }
    if (!IsFinite(key))
        text.Error("Object '%s' has a rotation key that is not finite: time %g, angle %g",
                   object->name.c_str(), static_cast<double>(key.time),
                   static_cast<double>(key.angle));
    AddSplitRotKey(object, key);
}

/// Interpolation between two keys takes the shorter way round, so a turn of half a circle or more
/// is split into several keys. Only the last of them eases with the key's own values.
void QSA_NodeImport::AddSplitRotKey(KRE_3dObject* object, KRE_RotKeyData& key)
{
    const KRE_RotKeyData* last = object->GetLastRotKey();
    if (!last) {
        object->AddRotKey(key);
        return;
    }
    const double turns = std::fabs(static_cast<double>(key.angle)) / kHalfTurn;
    if (turns >= keyPartLimits.ofKey)
        text.Error("Object '%s' turns too far in one rotation key: %g", object->name.c_str(),
                   static_cast<double>(key.angle));
    keyParts += static_cast<int64_t>(turns);
    if (keyParts > keyPartLimits.ofFile + text.TextSize() / kBytesPerKeyPart)
        text.Error("Object '%s' turns too far: %lli rotation keys in one file",
                   object->name.c_str(), static_cast<long long>(keyParts));

    const int32_t parts = 1 + static_cast<int32_t>(turns);
    const float step = (key.time - last->time) / static_cast<float>(parts);
    KRE_RotKeyData part;
    part.interpolation = key.interpolation;
    part.axis = key.axis;
    part.angle = key.angle / static_cast<float>(parts);
    part.time = last->time;
    for (int32_t i = 1; i < parts; ++i) {
        part.time += step;
        object->AddRotKey(part);
    }
    key.angle = part.angle;
    key.time = part.time + step;
    object->AddRotKey(key);
}

void QSA_NodeImport::FinishKeys(const QSA_TimeScale& time)
{
    for (KRE_Mesh* mesh : scene.meshes)
        FinishKeysOf(mesh, time);
    for (KRE_3dObject* object : scene.objects)
        FinishKeysOf(object, time);
    for (KRE_Camera* camera : scene.cameras)
        FinishKeysOf(camera, time);
    for (KRE_Light* light : scene.lights)
        FinishKeysOf(light, time);
}
