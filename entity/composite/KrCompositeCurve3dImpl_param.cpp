// The arc-length parameter of the composite: mapping to and from the segments, evaluation,
// length and sampling.
#include "KrsDiagnostics.h"
#include "entity/composite/KrCompositeCurve3dImpl.h"

namespace {

const char* const kSource = KrCompositeCurve3dImpl::kReportSource;
constexpr int kMaxSamples = 1048576;

// A segment's range read the way the mapping reads it (tolerance 1e-12).
KrGeInterval rangeOf(const KrGeCurve3d& curve) {
  KrGeInterval range(1e-12);
  curve.getInterval(range);
  return range;
}

double lowerOr(const KrGeInterval& range) {
  return range.isBoundedBelow() ? range.lowerBound() : -kKrUnboundedLength;
}
double upperOr(const KrGeInterval& range) { return range.isBoundedAbove() ? range.upperBound() : kKrUnboundedLength; }

}  // namespace

// The walk "first i with param <= S(i) + len(i) + gTol, else the last" is the bisection of
// KrCompositeLengths over the sums taken when the list was set; the segment then inverts its own
// length from its lower bound.
double KrCompositeCurve3dImpl::globalToLocalParam(double param, int& segNum) const {
  KRS_AUTOTEST("double KrCompositeCurve3dImpl::globalToLocalParam ( double param, int& segNum ) const");
  segNum = 0;
  const int nCurves = count();
  KRS_CHECK_TEXT_AT(nCurves != 0, "(nCurves == 0)", kSource, 1405);
  if (nCurves == 0) return 0.0;
  segNum = mLengths.locate(param, KrGeContext::gTol.equalPoint());
  return localOf(segNum, param);
}

double KrCompositeCurve3dImpl::localToGlobalParam(double param, int segNum) const {
  KRS_AUTOTEST("double KrCompositeCurve3dImpl::localToGlobalParam(double param, int segNum) const");
  const bool outside = segNum < 0 || segNum >= mCurveList.GetCount();
  KRS_CHECK_TEXT_AT(!outside, "(segNum < 0 || segNum >= mCurveList.GetCount())", kSource, 1442);
  if (outside) return segNum < 0 ? 0.0 : mLengths.before(count());
  return globalOf(segNum, param);
}

double KrCompositeCurve3dImpl::localOf(int index, double param) const {
  const KrGeCurve3d& curve = segment(index);
  const KrGeInterval range = rangeOf(curve);
  if (!range.isBounded()) return param;
  // A nested composite is parametrised by arc length itself; its paramAtLength is not provided.
  if (curve.type() == KrGe::kCompositeCrv3d) return range.lowerBound() + (param - mLengths.before(index));
  return curve.paramAtLength(range.lowerBound(), param - mLengths.before(index), true,
                             KrGeContext::gTol.equalPoint());
}

double KrCompositeCurve3dImpl::globalOf(int index, double local) const {
  const KrGeCurve3d& curve = segment(index);
  const KrGeInterval range = rangeOf(curve);
  const double own = range.isBounded() ? curve.length(range.lowerBound(), local, KrGeContext::gTol.equalPoint())
                                       : kKrUnboundedLength;
  return mLengths.before(index) + own;
}

KrGePoint3d KrCompositeCurve3dImpl::evalPoint(double param, int numDeriv, KrsArray<KrGeVector3d>& derivArray) const {
  KRS_AUTOTEST("KrGePoint3d KrCompositeCurve3dImpl::evalPoint(double param, int numDeriv, KrGeVector3dArray& derivArray) const");
  int index = 0;
  const double local = globalToLocalParam(param, index);
  if (index < 0 || index >= count()) return KrGePoint3d::kOrigin;
  return segment(index).evalPoint(local, numDeriv, derivArray);
}

double KrCompositeCurve3dImpl::length(double fromParam, double toParam, double tol) const {
  KRS_AUTOTEST("double KrCompositeCurve3dImpl::length(double fromParam, double toParam, double tol) const");
  if (toParam < fromParam) {
    const double lower = toParam;
    toParam = fromParam;
    fromParam = lower;
  }
  const int nCurves = count();
  KRS_CHECK_TEXT_AT(nCurves != 0, "(nCurves == 0)", kSource, 1199);
  if (nCurves == 0) return 0.0;
  int idxStartCurve = 0, idxLastCurve = 0;
  const double local0 = globalToLocalParam(fromParam, idxStartCurve);
  const double local1 = globalToLocalParam(toParam, idxLastCurve);
  KRS_CHECK_TEXT_AT(idxLastCurve >= idxStartCurve, "(idxLastCurve>=idxStartCurve)", kSource, 1206);
  if (idxLastCurve < idxStartCurve) return 0.0;
  double total = 0.0;
  for (int i = idxStartCurve; i <= idxLastCurve; ++i) {
    const KrGeInterval range = rangeOf(segment(i));
    const double from = i == idxStartCurve ? local0 : lowerOr(range);
    const double to = i == idxLastCurve ? local1 : upperOr(range);
    total += segment(i).length(from, to, tol);
  }
  return total;
}

void KrCompositeCurve3dImpl::getSamplePoints(int numSample, KrsArray<KrGePoint3d>& pointArray) const {
  KRS_AUTOTEST("void KrCompositeCurve3dImpl::getSamplePoints by num samples");
  pointArray.RemoveAll();
  if (numSample <= 1) {
    KrsReportError(0x80070057u, "negative count", kSource, 1335);
    return;
  }
  if (numSample > kMaxSamples) {
    KRS_WARN_AT("KrCompositeCurve3dImpl::getSamplePoints - numSample above 1048576, 1048576 used", kSource,
                __LINE__);
    numSample = kMaxSamples;
  }
  if (!mInterval.isBounded()) return;
  const double lower = mInterval.lowerBound();
  const double step = (mInterval.upperBound() - lower) / (numSample - 1);
  pointArray.SetSize(numSample);
  for (int i = 0; i < numSample; ++i) pointArray[i] = evalPoint(lower + i * step);
}

// Each segment samples itself over the same (global) numbers; the outputs only grow.
void KrCompositeCurve3dImpl::getSamplePoints(double fromParam, double toParam, double approxEps,
                                             KrsArray<KrGePoint3d>& pointArray, KrsArray<double>& paramArray) const {
  KRS_AUTOTEST("void KrCompositeCurve3dImpl::getSamplePoints by eps");
  KrsArray<KrGePoint3d> points;
  KrsArray<double> params;
  for (int i = 0; i < count(); ++i) {
    points.RemoveAll();
    params.RemoveAll();
    segment(i).getSamplePoints(fromParam, toParam, approxEps, points, params);
    pointArray.Append(points);
    paramArray.Append(params);
  }
}
