// Umbrella header: the whole public interface of the library.
//
// Hostile input never crashes, hangs or reaches undefined behaviour: NaN, infinities and
// degenerate geometry get the documented fallback; counts, indices and orders have stated limits
// beyond which a call is reported and answered neutrally. The one exception is
// KrsException(kOutOfMemory), from operations that grow a KrsArray (their contracts say so).
// Distinct objects may be used from distinct threads; the process-wide settings (KrGeContext,
// the warning switch) are not locked, so a host that changes them serialises that.
#pragma once

#include "KrGeInterval.h"
#include "KrGeKnotVector.h"
#include "KrGePolynomRoot.h"
#include "KrGe.h"
#include "KrGeContext.h"
#include "KrGeForward.h"
#include "KrGeLine2d.h"
#include "KrGeMatrix2d.h"
#include "KrGeMatrix3d.h"
#include "KrGePoint2d.h"
#include "KrGePoint3d.h"
#include "KrGeTol.h"
#include "KrGeVector2d.h"
#include "KrGeVector3d.h"
#include "KrGeEntity3d.h"
#include "KrGeCurve3d.h"
#include "KrGeCurveCurveInt3d.h"
#include "KrGeLinearEnt3d.h"
#include "KrGeLine3d.h"
#include "KrGeLineSeg3d.h"
#include "KrGeCircArc3d.h"
#include "KrGeEllipArc3d.h"
#include "KrGeSplineEnt3d.h"
#include "KrGeNurbCurve3d.h"
#include "KrGeCompositeCurve3d.h"
#include "KrGeBoundBlock3d.h"
#include "KrGePlanarEnt.h"
#include "KrGePlane.h"
#include "KrGePointEnt3d.h"
#include "KrGePointOnCurve3d.h"
#include "KrGeSurface.h"
#include "KrGeLExport.h"
#include "KrsArray.h"
#include "KrsDiagnostics.h"
#include "KrsException.h"
#include "KrsHeapObject.h"
#include "KrsPlex.h"
#include "KrsStringW.h"
