#include "base/Ascii.h"
#include "qsa/QSALoader.h"
#include "qsa/QSA_NameAttributes.h"

int32_t QSALoader::ParseMaterialList()
{
    int32_t number = 0;
    return ParseBlock([&](QSA_Token token) {
        int32_t value = 0;
        switch (token) {
        case QSA_Token::MaterialCount:
            ReadInt(&value);
            return 0;
        case QSA_Token::Material: {
            QSA_Material* material = AddMaterial();
            topMaterials.push_back(material);
            ReadInt(&value);
            if (value != number++)
                Error("Material in wrong order!");
            SkipTo('{');
            return ParseMaterial(material);
        }
        default:
            return 0;
        }
    });
}

QSA_Material* QSALoader::AddMaterial()
{
    return materials.emplace_back(std::make_unique<QSA_Material>()).get();
}

/// At a material's brace. Submaterials may stand inside each other to any depth, so the open ones
/// are kept in a list and not on the stack.
int32_t QSALoader::ParseMaterial(QSA_Material* material)
{
    std::vector<QSA_Material*> open;
    OpenMaterial(material, &open);
    while (!open.empty()) {
        const QSA_Token token = NextToken();
        QSA_Material* const current = open.back();
        if (token == QSA_Token::EndOfFile)
            return 1;
        if (token == QSA_Token::BlockEnd) {
            open.pop_back();
        } else if (token == QSA_Token::SubMaterial) {
            int32_t index = 0;
            ReadInt(&index);
            if (index != static_cast<int32_t>(current->subMaterials.size()))
                Error("Submaterial in wrong order!");
            QSA_Material* child = AddMaterial();
            current->subMaterials.push_back(child);
            SkipTo('{');
            OpenMaterial(child, &open);
        } else if (ParseMaterialKeyword(token, current) != 0) {
            return 1;
        }
    }
    return 0;
}

void QSALoader::OpenMaterial(QSA_Material* material, std::vector<QSA_Material*>* open)
{
    // Newer exporters always tell how a map is tiled.
    if (FileVersionAtLeast(2, 10))
        material->render.tileU = material->render.tileV = 0;
    open->push_back(material);
}

int32_t QSALoader::ParseMaterialKeyword(QSA_Token token, QSA_Material* material)
{
    KRE_MaterialInfo& render = material->render;
    switch (token) {
    case QSA_Token::MaterialName:
        ReadMaterialName(material);
        return 0;
    case QSA_Token::MaterialDiffuse:
        ReadColour(&material->diffuse);
        return 0;
    case QSA_Token::MaterialAmbient:
        ReadColour(&material->ambient);
        return 0;
    case QSA_Token::MaterialSpecular:
        ReadColour(&material->specular);
        return 0;
    case QSA_Token::MaterialSelfIllumColor:
        ReadColour(&material->selfIllum);
        return 0;
    case QSA_Token::MaterialShineStrength:
        ReadFloat(&material->shineStrength);
        return 0;
    case QSA_Token::MaterialShine:
        ReadFloat(&material->shine);
        return 0;
    case QSA_Token::MaterialTransparency:
        ReadFloat(&render.transparency);
        return 0;
    case QSA_Token::MaterialTransparencyType:
        ReadTransparencyType(&render);
        return 0;
    case QSA_Token::MaterialTwoSided: {
        int32_t value = 0;
        render.twoSided = ReadInt(&value) != 0 || value != 0 ? 1 : 0;
        return 0;
    }
    case QSA_Token::NumSubMaterials:
        ReadInt(&material->subMaterialCount);
        return 0;
    case QSA_Token::MapDiffuse:
        return ParseMap(kMapDiffuse, material);
    case QSA_Token::MapReflect:
        return ParseMap(kMapReflect, material);
    case QSA_Token::MapBump:
        return ParseMap(kMapBump, material);
    case QSA_Token::MaterialAnimation:
        SkipTo('{');
        return ParseMaterialAnimation(material);
    default:
        return 0;
    }
}

void QSALoader::ReadMaterialName(QSA_Material* material)
{
    TokenBuffer name;
    if (ReadQuoted(name) != 0)
        return;
    material->name.Assign(name);
    ParseEffectAttributes(name, &material->render.effectParams);
}

/// QUIRK: the type counts only behind a transparency above 0; exporters write it in that order.
void QSALoader::ReadTransparencyType(KRE_MaterialInfo* render)
{
    TokenBuffer word;
    SkipSpace();
    ReadWord(word);
    if (!(render->transparency > 0.0f))
        return;
    if (CompareNoCase(word, "Additive") == 0)
        render->transparencyType = kTransparencyAdditive;
    else if (CompareNoCase(word, "Subtractive") == 0)
        render->transparencyType = kTransparencySubtractive;
}

// ---- The finishing step

/// Finishes what was read since the last time. A list without any material gets a default one.
void QSALoader::FinishMaterials()
{
    if (topMaterials.empty())
        topMaterials.push_back(AddMaterial());
    for (; finishedMaterials < materials.size(); ++finishedMaterials)
        FinishMaterial(materials[finishedMaterials].get());
}

void QSALoader::FinishMaterial(QSA_Material* material)
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
        FinishTrack(*track);
    FinishTrack(render.opacityTrack);
    render.transparent =
        render.transparency > 0.0f || render.opacityTrack.GetKeyCount() > 0 ? 1 : 0;

    material->hasDiffuse = material->HasMap(kMapDiffuse);
    material->hasReflect = material->HasMap(kMapReflect);
    material->hasBump = material->HasMap(kMapBump) && options.Has(kLoadBumpMaps);
    for (const QSA_Material* child : material->subMaterials) {
        material->hasDiffuse = material->hasDiffuse || child->HasMap(kMapDiffuse);
        material->hasReflect = material->hasReflect || child->HasMap(kMapReflect);
        // QUIRK: a submaterial's bump map makes room in the vertices even where bump maps are not
        // loaded; the layout of converted meshes depends on it.
        material->hasBump = material->hasBump || child->HasMap(kMapBump);
    }
    if (static_cast<int64_t>(material->subMaterials.size()) != material->subMaterialCount)
        Warning("Material '%s' announces %i submaterials and has %i", material->name.c_str(),
                material->subMaterialCount, static_cast<int32_t>(material->subMaterials.size()));
}
