// Enumerations that cross the public interface: result codes, entity identifiers, intersection
// configurations and offset extension kinds. All are int-sized; numbers, not names, are what the
// library compares, so every value below is fixed and the gaps in EntityId are kept on purpose.
#pragma once

namespace KrGe {

// Status written through an out-argument; 0 is success.
enum ErrorCondition : int {
  kOk = 0,
  k0This = 1,                  // the object itself is a vector of zero length
  k0Arg1 = 2,                  // the first argument is a vector of zero length
  kPerpendicularArg1Arg2 = 3,  // projection direction lies in the projection plane
  k0Arg2 = 4,                  // the second argument is a vector of zero length
  kEqualArg1Arg2 = 5,          // two point arguments coincide
  kEqualArg1Arg3 = 6,
  kEqualArg2Arg3 = 7,
  kLinearlyDependentArg1Arg2Arg3 = 8,  // three points on one line (circle through three points)
  kArg1TooBig = 9,             // a distance or radius argument is too large for the construction
  kArg1OnThis = 10,            // the point argument lies on the object (a tangent is undefined)
  kArg1InsideThis = 11,        // the point argument lies inside the object (no tangent exists)
  kNonCoplanarGeometry = 12,   // the arguments are not in the object's plane
  kDegenerateGeometry = 13,    // the object itself is degenerate
  kSingularPoint = 14          // the requested quantity is undefined at that point
};

// Entity type numbers returned by type() and tested by isKindOf().
enum EntityId : int {
  kEntity3d = 1,          // root of every entity; never returned by type()
  kPointEnt3d = 3,        // abstract point entity
  kPosition3d = 5,        // KrGePointEnt3d
  kPointOnCurve3d = 7,    // KrGePointOnCurve3d
  kCircArc3d = 11,        // KrGeCircArc3d
  kCurve3d = 15,          // abstract curve
  kEllipArc3d = 17,       // KrGeEllipArc3d
  kLine3d = 19,           // unbounded linear entity
  kLinearEnt3d = 21,      // abstract linear entity
  kLineSeg3d = 23,        // bounded linear entity
  kSurface = 24,          // abstract surface kind (a plane is a kind of it)
  kPlane = 25,            // KrGePlane
  kPlanarEnt = 28,        // abstract planar-entity kind (a plane is a kind of it)
  kSplineEnt3d = 41,      // abstract spline curve
  kNurbCurve3d = 42,      // KrGeNurbCurve3d
  kCompositeCrv3d = 47,   // KrGeCompositeCurve3d
  kCurveCurveInt3d = 60,  // KrGeCurveCurveInt3d
  kBoundBlock3d = 62      // KrGeBoundBlock3d
};

// How curve 1 lies relative to curve 2 around one of their intersection points, looking along
// curve 1's parameter direction and seeing curve 2 from the side of the plane normal: the first
// word is the side before the point, the second the side after it. "Point" means the curve
// starts or ends there; "Overlap" means it runs along the other curve on that side.
enum KrGeXConfig : int {
  kNotDefined = 0,      // no configuration computed (bad index or not yet evaluated)
  kUnknown = 1,         // computed but undecidable (non-planar or degenerate tangents)
  kLeftRight = 2,       // crosses from the left of the other curve to its right
  kRightLeft = 3,       // crosses from the right to the left
  kLeftLeft = 4,        // touches from the left and stays left
  kRightRight = 5,      // touches from the right and stays right
  kPointLeft = 6,       // ends (or starts) at the point and lies left of the other curve
  kPointRight = 7,      // ends (or starts) at the point and lies right of the other curve
  kLeftOverlap = 8,     // comes from the left and then runs along the other curve
  kOverlapLeft = 9,     // runs along the other curve and then leaves to the left
  kRightOverlap = 10,   // comes from the right and then runs along the other curve
  kOverlapRight = 11,   // runs along the other curve and then leaves to the right
  kOverlapStart = 12,   // an overlap starts at the point (the curve itself begins there)
  kOverlapEnd = 13,     // an overlap ends at the point (the curve itself ends there)
  kOverlapOverlap = 14  // coincident on both sides of the point
};

// How the gaps between offset pieces of a contour are closed where the offset opens a corner.
enum OffsetCrvExtType : int {
  kFillet = 0,   // a circular arc about the original corner point, radius the offset distance
  kChamfer = 1,  // a straight segment joining the two offset end points
  kExtend = 2    // the offset pieces themselves are extended until they meet (natural extension)
};

}  // namespace KrGe
