// The operations every entity and every curve offers, driven with hostile arguments. A curve
// family's fuzz target calls curveStep() for the generic curve interface beside its own
// operations (see tests/fuzz/README.md).
#pragma once

#include <memory>

#include "tests/fuzz/FuzzInput.h"

namespace fuzz {

// Frees what an operation handed to the caller: new entities, lists of new curves.
inline void own(KrGeEntity3d* entity) { std::unique_ptr<KrGeEntity3d> owned(entity); }
inline void ownAll(KrsArray<void*>& entities, const KrsArray<int>* isNew = nullptr) {
  for (int i = 0; i < entities.GetSize(); ++i)
    if (!isNew || (i < isNew->GetSize() && isNew->GetData()[i] != 0))
      own(static_cast<KrGeEntity3d*>(entities.GetData()[i]));
}

// Entity operations: transformation, copy, comparison and assignment across kinds.
inline void entityStep(Input& in, KrGeEntity3d& entity, const KrGeEntity3d& other) {
  switch (in.below(8)) {
    case 0: entity.transformBy(in.matrix()); break;
    case 1: entity.translateBy(in.vector()); break;
    case 2: entity.rotateBy(in.real(), in.vector(), in.point()); break;
    case 3: entity.mirror(KrGePlane(in.point(), in.vector())); break;
    case 4: entity.scaleBy(in.real(), in.point()); break;
    case 5: own(entity.copy()); break;
    case 6: entity = other; break;
    default: keep(entity.isEqualTo(other, in.tol()) + entity.isOn(in.point(), in.tol()) +
                  entity.isKindOf(static_cast<KrGe::EntityId>(in.integer())) + entity.type());
  }
}

inline void curveStep(Input& in, KrGeCurve3d& curve, const KrGeCurve3d& other) {
  const KrGeTol tol = in.tol();
  KrGePoint3d onOther;
  KrGePointOnCurve3d onThis, onThat;
  KrsArray<void*> curves;
  switch (in.below(24)) {
    case 0: curve.setInterval(in.interval()); break;
    case 1: curve.reverseParam(), curve.setInterval(); break;
    case 2: keep(curve.closestPointTo(in.point(), tol)), keep(curve.distanceTo(other, tol)); break;
    case 3: keep(curve.closestPointTo(other, onOther, tol)), curve.getClosestPointTo(other, onThis, onThat, tol); break;
    case 4: keep(curve.projClosestPointTo(in.point(), in.vector(), tol)); break;
    case 5: keep(curve.projClosestPointTo(other, in.vector(), onOther, tol)); break;
    case 6: curve.getProjClosestPointTo(other, in.vector(), onThis, onThat, tol), keep(onThis.point()); break;
    case 7: keep(curve.getNormalPoint(in.point(), onThis, tol)), keep(onThis.deriv(in.integer())); break;
    case 8: own(curve.project(KrGePlane(in.point(), in.vector()), in.vector(), tol)); break;
    case 9: own(curve.orthoProject(KrGePlane(in.point(), in.vector()), tol)); break;
    case 10: {
      double param = in.real();
      keep(curve.isOn(param, tol) + curve.isOn(in.point(), param, tol) + curve.paramOf(in.point(), tol) + param);
      break;
    }
    case 11: {
      const double distance = in.real();
      const KrGeVector3d normal = in.vector();
      mayRunOutOfMemory([&] { curve.getTrimmedOffset(distance, normal, curves, KrGe::kFillet, tol); });
      ownAll(curves);
      break;
    }
    case 12: {
      KrGePlane plane;
      KrGeLine3d line;
      keep(curve.isClosed(tol) + curve.isPlanar(plane, tol) + curve.isLinear(line, tol) + curve.isCoplanarWith(other, plane, tol));
      break;
    }
    case 13: {
      double period = 0, area = 0;
      const double from = in.real(), to = in.real();
      keep(curve.isPeriodic(period) + curve.length(from, to, in.real()) + curve.paramAtLength(from, to, in.flag(), in.real()));
      keep(curve.area(from, to, area, tol) + area + period);
      break;
    }
    case 14: {
      KrGeEntity3d* degenerate = nullptr;
      KrGe::EntityId kind;
      keep(curve.isDegenerate(degenerate, tol) + curve.isDegenerate(kind, tol));
      own(degenerate);
      break;
    }
    case 15: {
      KrGeCurve3d *first = nullptr, *second = nullptr;
      curve.getSplitCurves(in.real(), first, second);
      own(first), own(second);
      break;
    }
    case 16: {
      KrsArray<int> isNew;
      const KrGeInterval range = in.interval();
      mayRunOutOfMemory([&] { keep(curve.explode(curves, isNew, in.flag() ? &range : nullptr)); });
      ownAll(curves, &isNew);
      break;
    }
    case 17: {
      const KrGeInterval near1 = in.interval(), near2 = in.interval();
      onThis.setCurve(curve).setParameter(in.real());
      onThat.setCurve(other).setParameter(in.real());
      curve.getLocalClosestPoints(other, onThis, onThat, in.flag() ? &near1 : nullptr, &near2, tol);
      curve.getLocalClosestPoints(in.point(), onThis, in.flag() ? &near1 : nullptr, tol);
      break;
    }
    case 18: {
      KrsArray<KrGeVector3d> derivatives;
      mayRunOutOfMemory([&] { keep(curve.evalPoint(in.real(), in.order(), derivatives)); });
      break;
    }
    case 19: {
      KrsArray<KrGePoint3d> points;
      KrsArray<double> params;
      mayRunOutOfMemory([&] { curve.getSamplePoints(in.length(), points); });
      const double from = in.real(), to = in.real();
      mayRunOutOfMemory([&] { curve.getSamplePoints(from, to, in.real(), points, params); });
      break;
    }
    case 20: {
      const KrGeInterval range = in.interval();
      KrGePoint3d low, high;
      curve.boundBlock(range).getMinMaxPoints(low, high);
      curve.orthoBoundBlock().getMinMaxPoints(low, high);
      keep(curve.hasStartPoint(low) + curve.hasEndPoint(high));
      break;
    }
    case 21: onThis.setCurve(curve).setParameter(in.real()).set(in.point()), keep(onThis.deriv(in.integer())); break;
    default: entityStep(in, curve, other);
  }
}

}  // namespace fuzz
