// The offset of a chain of curves in its plane: each segment offsets itself, and the pieces are
// joined at the chain's corners. Where two neighbouring pieces cross (the corner closes on the
// offset side) both are cut back to the crossing nearest the corner; where they leave a gap (the
// corner opens) the gap is bridged: kFillet by the arc of radius |distance| about the corner,
// kChamfer by the straight segment between the two ends, kExtend by running both pieces on along
// their lines or circles to their crossing nearest the corner (as kFillet where they never
// cross). A closed chain is joined across its start as well. A segment that has no offset (an arc
// whose radius would vanish) leaves its neighbours to be joined straight. Self-intersections
// between pieces that are not neighbours are left as they are.
#pragma once

#include "KrGe.h"
#include "KrGeTol.h"
#include "KrGeVector3d.h"
#include "KrsArray.h"

class KrCompositeCurve3dImpl;

// Appends the joined pieces to offsetCurveList in chain order (the caller owns them).
void krOffsetChain(const KrCompositeCurve3dImpl& chain, double distance, const KrGeVector3d& planeNormal,
                   KrsArray<void*>& offsetCurveList, KrGe::OffsetCrvExtType extensionType, const KrGeTol& tol);
