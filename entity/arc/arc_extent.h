// The range of one coordinate of a circular or elliptical arc over a parameter span, exactly:
// f(t) = center + x cos t + y sin t is a sinusoid, so its extremes are the end values and the
// crests that fall inside the span.
#pragma once

struct KrArcExtent {
  double low = 0.0;
  double high = 0.0;
  double lowParam = 0.0;   // a parameter where f is lowest
  double highParam = 0.0;  // a parameter where f is highest
};

// The extremes of f(t) = center + x cos t + y sin t over [from, to] (from <= to; a span of 2 pi
// or more holds both crests). The caller gives the end values fromValue = f(from) and
// toValue = f(to) as it evaluates them, so that the extent contains its own end points to the
// last bit. The crests are center +- hypot(x, y) at atan2(y, x) and atan2(y, x) + pi (mod 2 pi).
// On ties the start wins, then the end, so a constant f answers `from` for both parameters.
KrArcExtent krArcExtent(double center, double x, double y, double from, double to, double fromValue,
                        double toValue);
