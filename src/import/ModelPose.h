#pragma once

#include "import/Model.h"

/// The value of a track at a time: a position or a scale, or a rotation of length 1.
ModelVector VectorAt(const ModelTrack& track, double seconds);
ModelQuaternion RotationAt(const ModelTrack& track, double seconds);

/// Of length 1; no rotation if it is 0.
ModelQuaternion UnitRotation(const ModelQuaternion& value);
/// A share of the shortest way from one rotation to another, of any lengths.
ModelQuaternion RotationBetween(const ModelQuaternion& from, const ModelQuaternion& to,
                                double ratio);

ModelMatrix Product(const ModelMatrix& first, const ModelMatrix& second);
ModelVector Moved(const ModelVector& point, const ModelMatrix& matrix);
double DeterminantOf(const ModelMatrix& matrix);
/// The rotation `first`, followed by `second`.
ModelQuaternion Product(const ModelQuaternion& first, const ModelQuaternion& second);

/// The matrices of all nodes of a model at one time, in the world.
std::vector<ModelMatrix> WorldMatrices(const Model& model, double seconds);
/// That of one node.
ModelMatrix WorldMatrix(const Model& model, int node, double seconds);

/// The last time of all keys; 0 without any.
double LastKeyTime(const Model& model);
