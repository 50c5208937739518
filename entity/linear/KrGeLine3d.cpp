#include "KrGeLine3d.h"

#include "entity/linear/KrLinearEnt3dImpl.h"

inline KrLinearEnt3dImpl* KrGeLine3d::impl() const { return krImplAs<KrLinearEnt3dImpl>(m_pImpl); }

const KrGeLine3d KrGeLine3d::kXAxis(KrGePoint3d(0.0, 0.0, 0.0), KrGeVector3d(1.0, 0.0, 0.0));
const KrGeLine3d KrGeLine3d::kYAxis(KrGePoint3d(0.0, 0.0, 0.0), KrGeVector3d(0.0, 1.0, 0.0));
const KrGeLine3d KrGeLine3d::kZAxis(KrGePoint3d(0.0, 0.0, 0.0), KrGeVector3d(0.0, 0.0, 1.0));

KrGeLine3d::KrGeLine3d() { m_pImpl = new KrLinearEnt3dImpl(true); }
KrGeLine3d::KrGeLine3d(const KrGeLine3d& line) : KrGeLinearEnt3d() { m_pImpl = new KrLinearEnt3dImpl(*line.impl()); }
KrGeLine3d::KrGeLine3d(const KrGePoint3d& pnt, const KrGeVector3d& vec) { m_pImpl = new KrLinearEnt3dImpl(pnt, vec, true); }
KrGeLine3d::KrGeLine3d(const KrGePoint3d& pnt1, const KrGePoint3d& pnt2) { m_pImpl = new KrLinearEnt3dImpl(pnt1, pnt2, true); }

KrGeLine3d& KrGeLine3d::operator=(const KrGeLine3d& line) { if (this != &line) *m_pImpl = *line.m_pImpl; return *this; }
KrGeLine3d& KrGeLine3d::set(const KrGePoint3d& pnt, const KrGeVector3d& vec) { impl()->set(pnt, vec, true); return *this; }
KrGeLine3d& KrGeLine3d::set(const KrGePoint3d& pnt1, const KrGePoint3d& pnt2) { impl()->set(pnt1, pnt2, true); return *this; }
