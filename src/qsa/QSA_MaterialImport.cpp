#include "qsa/QSA_MaterialImport.h"
#include "base/Ascii.h"
#include "qsa/QSA_FinishTrack.h"
#include "qsa/QSA_NameAttributes.h"

QSA_MaterialImport::QSA_MaterialImport(QSA_SceneText& sceneText, const QSA_TimeScale& timeScale,
                                       const QSA_LoadOptions& loadOptions)
    : text(sceneText),
      time(timeScale),
      options(loadOptions)
{}

int32_t QSA_MaterialImport::ParseList()
{
    const int32_t result = ParseMaterials();
    FinishMaterials();
    return result;
}

int32_t QSA_MaterialImport::ParseMaterials()
{
    int32_t number = 0;
    return text.ParseBlock([&](QSA_Token token) {
        int32_t value = 0;
        switch (token) {
        case QSA_Token::MaterialCount:
            text.ReadInt(&value);
            return 0;
        case QSA_Token::Material: {
            QSA_Material* material = AddMaterial();
            topMaterials.push_back(material);
            text.ReadInt(&value);
            if (value != number++)
                text.Error("Material in wrong order!");
            text.SkipTo('{');
            return ParseMaterial(material);
        }
        default:
            return 0;
        }
    });
}

QSA_Material* QSA_MaterialImport::Find(int32_t index, const char* meshName)
{
    if (index < 0)
        return nullptr;
    if (static_cast<size_t>(index) < topMaterials.size())
        return topMaterials[static_cast<size_t>(index)];
    text.Warning("Mesh '%s' has material %i of %i", meshName, index,
                 static_cast<int32_t>(topMaterials.size()));
    return nullptr;
}

QSA_Material* QSA_MaterialImport::AddMaterial()
{
    return materials.emplace_back(std::make_unique<QSA_Material>()).get();
}

/// Starts at a material's opening brace. Submaterials can nest to any depth, so the open ones are
/// kept in a list and not on the call stack.
int32_t QSA_MaterialImport::ParseMaterial(QSA_Material* material)
{
    std::vector<QSA_Material*> open;
    OpenMaterial(material, &open);
    while (!open.empty()) {
        const QSA_Token token = text.NextToken();
        QSA_Material* const current = open.back();
        if (token == QSA_Token::EndOfFile)
            return 1;
        if (token == QSA_Token::BlockEnd) {
            open.pop_back();
        } else if (token == QSA_Token::SubMaterial) {
            int32_t index = 0;
            text.ReadInt(&index);
            if (index != static_cast<int32_t>(current->subMaterials.size()))
                text.Error("Submaterial in wrong order!");
            QSA_Material* child = AddMaterial();
            current->subMaterials.push_back(child);
            text.SkipTo('{');
            OpenMaterial(child, &open);
        } else if (ParseMaterialKeyword(token, current) != 0) {
            return 1;
        }
    }
    return 0;
}

void QSA_MaterialImport::OpenMaterial(QSA_Material* material, std::vector<QSA_Material*>* open)
{
    // Newer exporters always write how a map is tiled.
    if (text.FileVersionAtLeast(2, 10))
        material->render.tileU = material->render.tileV = 0;
    open->push_back(material);
}

int32_t QSA_MaterialImport::ParseMaterialKeyword(QSA_Token token, QSA_Material* material)
{
    KRE_MaterialInfo& render = material->render;
    switch (token) {
    case QSA_Token::MaterialName:
        ReadName(material);
        return 0;
    case QSA_Token::MaterialDiffuse:
        text.ReadColor(&material->diffuse);
        return 0;
    case QSA_Token::MaterialAmbient:
        text.ReadColor(&material->ambient);
        return 0;
    case QSA_Token::MaterialSpecular:
        text.ReadColor(&material->specular);
        return 0;
    case QSA_Token::MaterialSelfIllumColor:
        text.ReadColor(&material->selfIllum);
        return 0;
    case QSA_Token::MaterialShineStrength:
        text.ReadFloat(&material->shineStrength);
        return 0;
    case QSA_Token::MaterialShine:
        text.ReadFloat(&material->shine);
        return 0;
    case QSA_Token::MaterialTransparency:
        text.ReadFloat(&render.transparency);
        return 0;
    case QSA_Token::MaterialTransparencyType:
        ReadTransparencyType(&render);
        return 0;
    case QSA_Token::MaterialTwoSided: {
        int32_t value = 0;
        render.twoSided = text.ReadInt(&value) != 0 || value != 0 ? 1 : 0;
        return 0;
    }
    case QSA_Token::NumSubMaterials:
        text.ReadInt(&material->subMaterialCount);
        return 0;
    case QSA_Token::MapDiffuse:
        return ParseMap(kMapDiffuse, material);
    case QSA_Token::MapReflect:
        return ParseMap(kMapReflect, material);
    case QSA_Token::MapBump:
        return ParseMap(kMapBump, material);
    case QSA_Token::MaterialAnimation:
        text.SkipTo('{');
        return ParseAnimation(&material->render);
    default:
        return 0;
    }
}

void QSA_MaterialImport::ReadName(QSA_Material* material)
{
    TokenBuffer name;
    if (text.ReadQuoted(name) != 0)
        return;
    material->name.Assign(name);
    ParseEffectAttributes(name, &material->render.effectParams);
}

/// QUIRK: the type takes effect only after a transparency above 0; exporters write them in that
/// order.
void QSA_MaterialImport::ReadTransparencyType(KRE_MaterialInfo* render)
{
    TokenBuffer word;
    text.SkipSpace();
    text.ReadWord(word);
    if (!(render->transparency > 0.0f))
        return;
    if (CompareNoCase(word, "Additive") == 0)
        render->transparencyType = kTransparencyAdditive;
    else if (CompareNoCase(word, "Subtractive") == 0)
        render->transparencyType = kTransparencySubtractive;
}

// ---- The finishing step

/// Finishes the materials read since the last call.
void QSA_MaterialImport::FinishMaterials()
{
    if (topMaterials.empty())
        topMaterials.push_back(AddMaterial());
    for (; finishedMaterials < materials.size(); ++finishedMaterials)
        FinishMaterial(materials[finishedMaterials].get());
}

void QSA_MaterialImport::FinishMaterial(QSA_Material* material)
{
    KRE_MaterialInfo& render = material->render;
    const float strength = material->shineStrength;
    const D3DCOLORVALUE& specular = material->specular;
    render.diffuse = material->diffuse;
    render.ambient = material->ambient;
    render.specular = {specular.r * strength, specular.g * strength, specular.b * strength, 1.0f};
    render.emissive = material->selfIllum;
    render.power = material->shine * 100.0f;
    for (KRE_ColorTrack* track : {&render.diffuseTrack, &render.ambientTrack, &render.specularTrack,
                                  &render.selfIllumTrack})
        FinishTrack(track, time);
    FinishTrack(&render.opacityTrack, time);
    render.transparent =
        render.transparency > 0.0f || render.opacityTrack.GetKeyCount() > 0 ? 1 : 0;

    material->hasDiffuse = material->HasMap(kMapDiffuse);
    material->hasReflect = material->HasMap(kMapReflect);
    material->hasBump = material->HasMap(kMapBump) && options.Has(kLoadBumpMaps);
    for (const QSA_Material* child : material->subMaterials) {
        material->hasDiffuse = material->hasDiffuse || child->HasMap(kMapDiffuse);
        material->hasReflect = material->hasReflect || child->HasMap(kMapReflect);
        // QUIRK: a submaterial's bump map reserves room in the vertices even where bump maps are
        // not loaded; the layout of converted meshes depends on it.
        material->hasBump = material->hasBump || child->HasMap(kMapBump);
    }
    if (static_cast<int64_t>(material->subMaterials.size()) != material->subMaterialCount)
        text.Warning("Material '%s' announces %i submaterials and has %i", material->name.c_str(),
                     material->subMaterialCount,
                     static_cast<int32_t>(material->subMaterials.size()));
}
