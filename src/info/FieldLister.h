#pragma once

#include "info/FieldList.h"
#include "qsb/QSB_HeaderFields.h"
#include "qsb/QSB_MaterialFields.h"
#include "qsb/QSB_SceneFields.h"

/// The archive that lists the fields of stored records: see qsb/QSB_Archive.h. It lists what the
/// current version of files has, except for the keys and parts that are listed separately.
class FieldLister {
public:
    static constexpr bool kLoads = false;
    struct Flag {
        const char* name;
        const int32_t& value;
    };

    explicit FieldLister(FieldList& fieldsIn) : fields(fieldsIn) {}

    bool Has(QSB_Version) const { return true; }
    void Whole(const char* name, int64_t value) { fields.Whole(name, value); }
    void Real(const char* name, float value) { fields.Real(name, value); }
    template <int32_t N>
    void Reals(const char* name, const float (&values)[N])
    {
        fields.Reals(name, values, N);
    }
    void Bits(const char* name, uint32_t bits) { fields.Bits(name, bits); }
    void Text(const char* name, const String& text) { fields.Text(name, text.c_str()); }
    void Text(const char* name, const char* text) { fields.Text(name, text); }
    void Vector(const char* name, const D3DXVECTOR3& vector) { fields.Vector(name, vector); }
    void Quaternion(const char* name, const D3DXQUATERNION& q) { fields.Quaternion(name, q); }
    void Color(const char* name, const D3DCOLORVALUE& color) { fields.Color(name, color); }
    void Matrix(const char* name, const D3DXMATRIX& matrix) { fields.Matrix(name, matrix); }
    void AffineMatrix(const char* name, const D3DXMATRIX& matrix) { fields.Matrix(name, matrix); }
    void Name(const String&) {}
    void Flags(std::initializer_list<Flag> flags)
    {
        for (const Flag& flag : flags)
            fields.Whole(flag.name, flag.value);
    }
    bool IsGiven(uint8_t isGiven) const { return isGiven != 0; }
    template <class Key>
    bool Keys(const char* name, const char*, const KRE_KeyList<Key>&, int32_t count)
    {
        fields.Whole(name, count);
        return true;
    }
    template <class Key>
    void TrackKeys(const KRE_ArrayTrack<Key>&, int32_t, int32_t)
    {}
    template <class Part>
    void Record(const Part& part)
    {
        Fields(*this, part);
    }
    template <class Part>
    void Track(const char*, const Part&)
    {}

    // For meshes. The geometry of a clone is that of its source.
    void Materials(const char* name, const KRE_Mesh& mesh)
    {
        fields.Whole(name, mesh.materialCount);
    }
    void BoneCount(const char* name, const KRE_Mesh& mesh)
    {
        fields.Whole(name, mesh.bones.Count());
    }
    void Geometry(const KRE_Mesh& mesh)
    {
        Record(QSB_Geometry{mesh.vertexCount, mesh.faceCount, mesh.fvf});
    }
    void Bones(const KRE_Mesh&) {}

private:
    FieldList& fields;
};

/// Adds the stored fields of a record.
template <class Record>
void AddFields(const Record& record, FieldList& fields)
{
    FieldLister lister(fields);
    Fields(lister, record);
}
