// Forward declarations of every public class and enumeration of the library.
#pragma once

class KrGeTol;
struct KrGeContext;
class KrGePoint3d;
class KrGeVector3d;
class KrGeMatrix3d;
class KrGePoint2d;
class KrGeVector2d;
class KrGeMatrix2d;
class KrGeLine2d;
class KrGeInterval;
class KrGeKnotVector;
class KrGeEntity3d;
class KrGeCurve3d;
class KrGeLinearEnt3d;
class KrGeLine3d;
class KrGeLineSeg3d;
class KrGeCircArc3d;
class KrGeEllipArc3d;
class KrGeSplineEnt3d;
class KrGeNurbCurve3d;
class KrGeCompositeCurve3d;
class KrGeSurface;
class KrGePlanarEnt;
class KrGePlane;
class KrGePointEnt3d;
class KrGePointOnCurve3d;
class KrGeCurveCurveInt3d;
class KrGeBoundBlock3d;

namespace KrGe {
enum ErrorCondition : int;
enum EntityId : int;
enum KrGeXConfig : int;
enum OffsetCrvExtType : int;
}  // namespace KrGe
