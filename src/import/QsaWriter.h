#pragma once

#include "import/QsaScene.h"
#include "import/QsaText.h"

/// Writes a scene block by block.
class QsaWriter {
public:
    QsaWriter(const QsaScene& sceneIn, const Model& modelIn,
              const std::vector<std::string>& picturesIn)
        : scene(sceneIn),
          model(modelIn),
          pictures(picturesIn)
    {}

    std::string Write();

private:
    void WriteScene();
    void WriteBounds();

    // WriteQsaMaterials.cpp
    void WriteMaterials();
    void WriteMaterial(const std::string& head, int material);
    void WriteColors(const ModelMaterial& material);
    bool HasPicture(int image) const;
    void WriteMap(const char* head, const ModelMap& map, ModelMapMoves moves, double amount);
    void WriteMapTracks(const ModelMapMoves& moves);
    void WriteMaterialTracks(const ModelMaterial& material);
    void WriteExtraKeys(const char* keyword, const ModelExtraTrack& track, size_t parts,
                        bool withTangents);
    static ModelMapMoves MovesOf(const ModelMap& map);
    static void Unmirror(ModelMapMoves& moves, size_t offset, size_t tile);

    // WriteQsaNodes.cpp
    void WriteNode(const QsaNode& node);
    void WriteTransform(const char* keyword, const QsaNode& node);
    void WriteMatrix(const char* keyword, const ModelMatrix& matrix);
    void WriteAnimation(const QsaNode& node);
    void WriteVectorTrack(const char* block, const char* sample, const char* bezier,
                          const QsaVectorTrack& track);
    void WriteLight(const QsaNode& node);
    double Ticks(double seconds) const;

    // WriteQsaMeshes.cpp
    void WriteMesh(const QsaNode& node);
    void WriteFaces(const MeshPiece& piece);
    void WriteTexCoords(const MeshPiece& piece);
    void WriteWeights(const QsaNode& node);

    const QsaScene& scene;
    const Model& model;
    const std::vector<std::string>& pictures;
    QsaText text;
};
