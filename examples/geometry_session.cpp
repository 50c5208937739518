// A short geometry session as a host would run it: segments and lines, where they meet and how
// close they come, a plane cutting through a small solid, and circles: through three points, as
// a fillet, cutting a line, passing each other in space, and read back from an intersection;
// ellipses; and a slot outline held as one composite curve.
#include <cstdio>

#include "KrGeBoundBlock3d.h"
#include "KrGeCircArc3d.h"
#include "KrGeCompositeCurve3d.h"
#include "KrGeCurveCurveInt3d.h"
#include "KrGeEllipArc3d.h"
#include "KrGeLine3d.h"
#include "KrGeLineSeg3d.h"
#include "KrGeNurbCurve3d.h"
#include "KrGePlane.h"
#include "KrGePointOnCurve3d.h"

namespace {

void print(const char* label, const KrGePoint3d& p) {
  std::printf("  %-40s (%.6g, %.6g, %.6g)\n", label, p.x, p.y, p.z);
}
void print(const char* label, const KrGeVector3d& v) {
  std::printf("  %-40s <%.6g, %.6g, %.6g>\n", label, v.x, v.y, v.z);
}
void print(const char* label, double value) { std::printf("  %-40s %.6g\n", label, value); }

void segmentsAndLines() {
  std::printf("\nSegments and lines\n");
  const KrGeLineSeg3d rising(KrGePoint3d(0, 0, 0), KrGePoint3d(4, 4, 0));
  const KrGeLineSeg3d falling(KrGePoint3d(0, 4, 0), KrGePoint3d(4, 0, 0));
  KrGePoint3d hit;
  if (rising.intersectWith(falling, hit)) print("the two diagonals cross at", hit);

  const KrGeLineSeg3d high(KrGePoint3d(0, 4, 3), KrGePoint3d(4, 0, 3));
  std::printf("  %-40s %s\n", "does a diagonal 3 units higher meet it?",
              rising.intersectWith(high, hit) ? "yes" : "no");
  KrGePoint3d onHigh;
  const KrGePoint3d onRising = rising.closestPointTo(high, onHigh);
  print("closest point on the low diagonal", onRising);
  print("closest point on the high one", onHigh);
  print("their distance", rising.distanceTo(high));

  const KrGeLine3d parallel(KrGePoint3d(0, 1, 0), KrGeVector3d(1, 1, 0));
  std::printf("  %-40s %s\n", "does a parallel line meet the diagonal?",
              rising.intersectWith(parallel, hit) ? "yes" : "no");
  print("distance between them", rising.distanceTo(parallel));

  const KrGePoint3d probe(7, 5, 1);
  print("point", probe);
  print("nearest point of the diagonal", rising.closestPointTo(probe));
  KrGePointOnCurve3d foot;
  rising.getClosestPointTo(probe, foot);
  print("at parameter", foot.parameter());
  print("nearest point of its full line", KrGeLine3d(KrGePoint3d(0, 0, 0), KrGePoint3d(4, 4, 0)).closestPointTo(probe));
}

void planeCut() {
  std::printf("\nA plane cut through a tetrahedron\n");
  const KrGePoint3d corners[4] = {{0, 0, 0}, {6, 0, 0}, {0, 6, 0}, {0, 0, 6}};
  const KrGePlane cut(KrGePoint3d(0, 0, 2), KrGeVector3d(0.2, 0.1, 1));
  print("cutting plane through", cut.pointOnPlane());
  print("with unit normal", cut.normal());
  KrGeBoundBlock3d section;
  for (int i = 0; i < 4; ++i) {
    for (int j = i + 1; j < 4; ++j) {
      const KrGeLineSeg3d edge(corners[i], corners[j]);
      KrGePoint3d hit;
      char label[64];
      std::snprintf(label, sizeof label, "edge %d-%d is cut at", i, j);
      if (cut.intersectWith(edge, hit)) {
        print(label, hit);
        section.extend(hit);
      } else {
        std::printf("  edge %d-%d is not cut (%s)\n", i, j,
                    cut.isParallelTo(edge) ? "parallel" : "both ends on one side");
      }
    }
  }
  KrGePoint3d low, high;
  section.getMinMaxPoints(low, high);
  print("section fits in the box from", low);
  print("to", high);

  const KrGePlane wall(KrGePoint3d(1, 0, 0), KrGeVector3d(1, -1, 0));
  KrGeLine3d common;
  if (cut.intersectWith(wall, common)) {
    print("the cut meets the wall x = y + 1 on", common.pointOnLine());
    print("along", common.direction());
  }

  KrGeLineSeg3d edge(corners[0], corners[3]);
  edge.mirror(cut);
  print("the vertical edge mirrored runs from", edge.startPoint());
  print("to", edge.endPoint());
}

const char* configName(KrGe::KrGeXConfig config) {
  static const char* const names[] = {"not defined", "unknown",      "left to right", "right to left",
                                      "touches from the left", "touches from the right", "ends on the left",
                                      "ends on the right", "left, then along", "along, then left",
                                      "right, then along", "along, then right", "starts along",
                                      "ends along", "along on both sides"};
  return config >= 0 && config <= 14 ? names[config] : "?";
}

void circles() {
  std::printf("\nCircles and arcs\n");
  const KrGeCircArc3d throughThree(KrGePoint3d(1, 0, 0), KrGePoint3d(0, 1, 0), KrGePoint3d(-1, 0, 0));
  print("arc through (1,0,0) (0,1,0) (-1,0,0): centre", throughThree.center());
  print("radius", throughThree.radius());
  print("sweep in degrees", (throughThree.endAng() - throughThree.startAng()) * 180 / 3.141592653589793);

  const KrGeLineSeg3d floor(KrGePoint3d(0, 0, 0), KrGePoint3d(10, 0, 0));
  const KrGeLineSeg3d wall(KrGePoint3d(0, 8, 0), KrGePoint3d(0, 0, 0));
  KrGeCircArc3d fillet;
  double onFloor = 0, onWall = 0;
  bool filleted = false;
  fillet.set(floor, wall, 2.0, onFloor, onWall, filleted);
  std::printf("  %-40s %s\n", "a fillet of radius 2 in the corner", filleted ? "fits" : "does not fit");
  print("its centre", fillet.center());
  print("it leaves the floor at", fillet.startPoint());
  print("and meets the wall at", fillet.endPoint());

  const KrGeCircArc3d hole(KrGePoint3d(5, 5, 0), KrGeVector3d(0, 0, 1), 3.0);
  const KrGeLine3d cut(KrGePoint3d(0, 4, 0), KrGeVector3d(1, 0, 0));
  int count = 0;
  KrGePoint3d first, second;
  hole.intersectWith(cut, count, first, second);
  print("the line y = 4 cuts the circle in points", count);
  if (count > 0) print("first", first);
  if (count > 1) print("second", second);

  const KrGeCircArc3d ring(KrGePoint3d(0, 0, 0), KrGeVector3d(0, 0, 1), 2.0);
  const KrGeCircArc3d hoop(KrGePoint3d(3, 0, 1), KrGeVector3d(1, 1, 0), 1.5);
  KrGePoint3d onHoop;
  const KrGePoint3d onRing = ring.closestPointTo(hoop, onHoop);
  print("two skew circles come closest at", onRing);
  print("and", onHoop);
  print("their distance", onRing.distanceTo(onHoop));

  const KrGeCurveCurveInt3d crossing(hole, cut, KrGeVector3d(0, 0, 1));
  print("the intersection object holds points", crossing.numIntPoints());
  for (int i = 0; i < crossing.numIntPoints(); ++i) {
    KrGe::KrGeXConfig circleWrtLine = KrGe::kNotDefined, lineWrtCircle = KrGe::kNotDefined;
    crossing.getIntConfigs(i, circleWrtLine, lineWrtCircle);
    KrGePointOnCurve3d onLine;
    crossing.getPointOnCurve2(i, onLine);
    std::printf("  point %d (%.6g, %.6g, %.6g), at x = %.6g on the line: the circle runs %s of it, the line %s\n", i,
                crossing.intPoint(i).x, crossing.intPoint(i).y, crossing.intPoint(i).z, onLine.parameter(),
                configName(circleWrtLine), configName(lineWrtCircle));
  }
}

// A flat ellipse: its perimeter and an arc's length, the nearest point from a point next to a
// cusp of its evolute (where the distance is flattest), and where a circle crosses it.
void ellipses() {
  std::printf("\nEllipses\n");
  const KrGeEllipArc3d oval(KrGePoint3d(0, 0, 0), KrGeVector3d(1, 0, 0), KrGeVector3d(0, 1, 0), 5.0, 2.0);
  print("perimeter of the 5 x 2 ellipse", oval.length(0, 6.283185307179586));
  print("length of its first quarter", oval.length(0, 1.5707963267948966));
  print("parameter 7 units along from 0", oval.paramAtLength(0, 7));
  // The evolute's cusp on the major axis is at (a^2 - b^2) / a = 4.2; just inside it the nearest
  // points leave the vertex.
  const KrGePoint3d nearCusp(4.19, 0.001, 0);
  print("point beside the evolute's cusp", nearCusp);
  print("its nearest point on the ellipse", oval.closestPointTo(nearCusp));
  print("at the distance", oval.distanceTo(nearCusp));

  const KrGeCircArc3d circle(KrGePoint3d(3, 1, 0), KrGeVector3d(0, 0, 1), 2.5);
  const KrGeCurveCurveInt3d meeting(oval, circle, KrGeVector3d(0, 0, 1));
  print("the circle about (3, 1) of radius 2.5 crosses it", meeting.numIntPoints());
  for (int i = 0; i < meeting.numIntPoints(); ++i) print("  at", meeting.intPoint(i));
}

// The quarter of the unit circle as a rational quadratic NURBS curve (corner weight 1/sqrt 2):
// its points stay on the circle, its length is pi / 2, and it keeps its distance to a segment.
void nurbsQuarterCircle() {
  std::printf("\nA NURBS quarter circle\n");
  const double knots[] = {0, 0, 0, 1, 1, 1};
  KrsArray<KrGePoint3d> points;
  points.Add(KrGePoint3d(1, 0, 0));
  points.Add(KrGePoint3d(1, 1, 0));
  points.Add(KrGePoint3d(0, 1, 0));
  KrsArray<double> weights;
  weights.Add(1.0);
  weights.Add(0.7071067811865476);
  weights.Add(1.0);
  const KrGeNurbCurve3d quarter(2, KrGeKnotVector(6, knots), points, weights);
  print("point at parameter 0.5", quarter.evalPoint(0.5));
  KrsArray<KrGeVector3d> derivatives;
  quarter.evalPoint(0.5, 1, derivatives);
  print("tangent there", derivatives[0]);
  KrsArray<KrGePoint3d> samples;
  KrsArray<double> params;
  quarter.getSamplePoints(0, 1, 1e-3, samples, params);
  double worst = 0.0;
  for (int i = 0; i < samples.GetSize(); ++i) {
    const double off = samples[i].asVector().length() - 1.0;
    worst = off > worst ? off : (-off > worst ? -off : worst);
  }
  print("samples within 1e-3 of the chords", samples.GetSize());
  print("farthest sample from the unit circle", worst);
  const double length = quarter.length(0, 1, 1e-14);
  print("length", length);
  print("length - pi / 2", length - 1.5707963267948966);
  print("parameter halfway along", quarter.paramAtLength(0, length / 2, true, 1e-14));
  const KrGeLineSeg3d chord(KrGePoint3d(2, 0, 0), KrGePoint3d(0, 2, 0));
  KrGePoint3d onChord;
  print("nearest point to the segment (2,0)-(0,2)", quarter.closestPointTo(chord, onChord));
  print("distance, 2 / sqrt 2 - 1 expected", quarter.distanceTo(chord));
}

// A slot 10 long and 4 wide (two straight sides, two half circles of radius 2), handed over as one
// contour that owns its four pieces: its length, the point 12 units along it, its box, and the
// nearest point of the outline to a point outside.
void slotOutline() {
  std::printf("\nA slot outline as one composite curve\n");
  const double pi = 3.141592653589793;
  const KrGeVector3d up(0, 0, 1), right(1, 0, 0);
  KrsArray<void*> pieces;
  pieces.Add(new KrGeLineSeg3d(KrGePoint3d(0, -2, 0), KrGePoint3d(10, -2, 0)));
  pieces.Add(new KrGeCircArc3d(KrGePoint3d(10, 0, 0), up, right, 2.0, -pi / 2, pi / 2));
  pieces.Add(new KrGeLineSeg3d(KrGePoint3d(10, 2, 0), KrGePoint3d(0, 2, 0)));
  pieces.Add(new KrGeCircArc3d(KrGePoint3d(0, 0, 0), up, right, 2.0, pi / 2, 3 * pi / 2));
  KrsArray<int> owned;
  for (int i = 0; i < pieces.GetCount(); ++i) owned.Add(1);
  const KrGeCompositeCurve3d slot(pieces, owned);
  KrGeInterval range;
  slot.getInterval(range);
  print("length (20 + 4 pi)", slot.length(range.lowerBound(), range.upperBound()));
  print("closed?", slot.isClosed() ? 1.0 : 0.0);
  print("point 12 units along the outline", slot.evalPoint(12.0));
  int piece = 0;
  const double own = slot.globalToLocalParam(12.0, piece);
  print("  on piece", piece);
  print("  at its own parameter (radians)", own);
  KrGePoint3d low, high;
  slot.orthoBoundBlock().getMinMaxPoints(low, high);
  print("bounding box from", low);
  print("             to", high);
  const KrGePoint3d outside(13, 3, 0);
  print("nearest outline point to (13, 3, 0)", slot.closestPointTo(outside));
  print("at the distance", slot.distanceTo(outside));
  // A tool of radius 0.5 running outside the slot: the outline moved out by 0.5 (the slot runs
  // counter-clockwise, so positive distances go to its right, outside).
  KrsArray<void*> path;
  slot.getTrimmedOffset(0.5, KrGeVector3d(0, 0, 1), path, KrGe::kFillet);
  KrsArray<int> ownedPath;
  for (int i = 0; i < path.GetCount(); ++i) ownedPath.Add(1);
  const KrGeCompositeCurve3d toolPath(path, ownedPath);
  KrGeInterval pathRange;
  toolPath.getInterval(pathRange);
  print("tool path pieces", path.GetCount());
  print("tool path length (20 + 5 pi)", pathRange.upperBound());
}

}  // namespace

void runGeometrySession() {
  std::printf("\nGeometry session\n");
  segmentsAndLines();
  planeCut();
  circles();
  ellipses();
  nurbsQuarterCircle();
  slotOutline();
}
