/// \file
/// CEllipse: ellipses, circles, arcs, rectangles and parallelograms turned into conic
/// parameters, integer outlines and scan-line spans for the raster engine.
///
/// Conventions
///  - Device coordinates, y grows downward: "top" is the least y, "left" the least x. Angles
///    are radians from +x toward +y (clockwise on the screen).
///  - An ellipse is given as an axis-aligned bounding rectangle (RECT or RECTD) with a turning
///    angle about its centre, or as such a rectangle carried into device space by an
///    ATransform (x' = eM11*x + eM21*y + eDx, y' = eM12*x + eM22*y + eDy).
///  - Zero tests on coefficients and denominators use 1e-6. An angle is "near" 0, pi/2, pi or
///    3pi/2 when it differs from it by less than kAngleTolerance (0.005 as a single-precision
///    value, widened; kept at that width on purpose).
///  - Angles are normalised to [0, 2*pi) first (angle - ZelFloor(angle / 2pi) * 2pi; angles
///    already in range are used unchanged). After normalisation only the spans, the turned
///    borders and RotateRect compare with 0, pi/2, pi and 3pi/2, never with 2pi: an angle
///    just below 2pi (for instance -0.003) is therefore *not* near 0 for them and takes the
///    general, turned path. EllipsePoint alone also accepts "near 2pi". Hosts depend on this.
///  - Results are 1 for success and 0 for failure unless stated. Span operations return the
///    first row. Nothing is thrown, except that the protected tracers and profile routines let
///    the array's exceptions through where documented. Public span and outline operations
///    that run out of memory give their empty result (the transformed-ellipse forms also show
///    the library's message 20, "insufficient memory", through ZelDialogMsg).
///
/// Inputs outside the useful range (documented failure results, never undefined behaviour):
///  - NaN or infinite angles, coefficients or transforms make the conic and bounds routines
///    fail (0) or produce non-finite doubles; integer results then saturate (NaN gives 0).
///    The spans of a NaN or infinite angle are empty, except for a circle (w == h >= 3) and a
///    single pixel, whose spans do not depend on the angle.
///  - Span operations refuse shapes whose device extent exceeds kMaxExtent pixels in either
///    direction, outline operations those beyond kMaxOutlineExtent, and both refuse edges
///    beyond +-kMaxCoordinate: no spans (or no points), an empty border and the rectangle's
///    top as first row. This bounds the runs of one call to 32 MiB, an outline to a few
///    hundred MiB at worst, and the time of a call to well under a second.
///  - A singular transform (determinant within 1e-10 of 0) has no ellipse in device space:
///    spans and outlines are empty.
///
/// Thread-safety: every operation is static and re-entrant; callers own all arrays.
#pragma once

#include <kxbase/ellipse/records.h>
#include <kxbase/export.h>
#include <kxbase/geometry/pointd.h>
#include <kxbase/geometry/rectd.h>
#include <kxbase/geometry/transform.h>
#include <kxbase/platform/carray.h>
#include <kxbase/platform/crect.h>
#include <kxbase/platform/types.h>

/// The shape rasteriser: conic parameters, bounds, points, outlines and scan-line spans, as static
/// functions.
class KXBASE_API CEllipse {
public:
    /// Angle tolerance: the single-precision 0.005 widened to double.
    static constexpr double kAngleTolerance = 0.004999999888241291;
    /// Largest device extent (width or height, in pixels) the span operations accept; larger
    /// shapes give an empty result. At most 32 MiB of runs per call.
    static constexpr int kMaxExtent = 1 << 22;
    /// Largest device extent the outline operations accept (an outline holds about twice the
    /// sum of width and height in points); larger shapes give an empty outline.
    static constexpr int kMaxOutlineExtent = 1 << 20;
    /// Largest absolute device coordinate the span and outline operations accept.
    static constexpr int kMaxCoordinate = 1 << 30;

    // ======================================================================================
    // Conic parameters
    // ======================================================================================

    /// The conic of the points P whose image t(P) lies on the ellipse inscribed in rc:
    /// B2*(x'-cx)^2 + A2*(y'-cy)^2 - A2*B2 = 0 with (x', y') = t(x, y), A2 and B2 the squared
    /// half-width and half-height, then divided by the smaller of a and c (no zero test:
    /// a degenerate t gives infinities or NaN). The transform is used as given: pass the
    /// inverse of a page-to-device map to get the device-space ellipse.
    /// Fails (0, outputs untouched) when the width or height is not positive.
    static int GetEllipseParam(const RECTD& rc, const ATransform& t, double& a, double& b,
                               double& c, double& d, double& e, double& f);
    ///@{
    /// The same with the rectangle's edges converted to double.
    static int GetEllipseParam(const RECT& rc, const ATransform& t, double& a, double& b, double& c,
                               double& d, double& e, double& f);
    static int GetEllipseParam(const RECT& rc, const ATransform& t, ELLPARAM& param);
    static int GetEllipseParam(const RECTD& rc, const ATransform& t, ELLPARAM& param);
    ///@}

    /// Centred, turned form p*x^2 + q*y^2 + r*x*y = s of the ellipse inscribed in rc and
    /// turned by angle, about the origin. The angle is normalised and then reduced below pi
    /// (the form of angle and angle + pi is the same). Fails (0, outputs untouched) when the
    /// integer width or height is below 1.
    static int GetEllipseParam(const RECT& rc, double angle, double& p, double& q, double& r,
                               double& s);

    // ======================================================================================
    // Bounds
    // ======================================================================================

    /// Extreme points (top, left, bottom, right), integer border and centre of the conic.
    /// Any output may be null and is then not written. The border is (left, top) = the
    /// half-away rounding of (xLeft, yTop), right = left + trunc(xRight - xLeft + 1.5),
    /// bottom = top + trunc(yBottom - yTop + 1.5). Fails (0, nothing written) when a or c is
    /// below 1e-6 in size, a tangent equation degenerates, the conic has no real points, or
    /// its extremes are not finite (NaN or infinite coefficients).
    static int GetEllBoundary(const ELLPARAM& param, POINTD* pts, RECT* border, POINTD* center);
    ///@{
    /// The same with integer points: each point rounded half away from zero, the centre
    /// only truncated with the 1e-10 epsilon (deliberately: (10.5, 7.5) gives (10, 7)).
    /// Points and centre are written even on failure (then as zeros); the border is then
    /// left untouched.
    static int GetEllBoundary(const ELLPARAM& param, POINT* pts, RECT* border, POINT* center);
    static int GetEllBoundary(const ELLPARAM& param, ELLBOUND& bound);
    ///@}
    ///@{
    /// Device-space bounds of the ellipse inscribed in rc as t carries it: the conic is
    /// built with the inverse of t (a singular t is used as TransMatrix::InverseMatrix
    /// leaves it). An empty rectangle fails with nothing written.
    static int GetEllBoundary(const RECT& rc, const ATransform& t, POINT* pts, RECT* border,
                              POINT* center);
    static int GetEllBoundary(const RECTD& rc, const ATransform& t, POINT* pts, RECT* border,
                              POINT* center);
    static int GetEllBoundary(const RECT& rc, const ATransform& t, POINTD* pts, RECT* border,
                              POINTD* center);
    static int GetEllBoundary(const RECTD& rc, const ATransform& t, POINTD* pts, RECT* border,
                              POINTD* center);
    static int GetEllBoundary(const RECT& rc, const ATransform& t, ELLBOUND& bound);
    static int GetEllBoundary(const RECTD& rc, const ATransform& t, ELLBOUND& bound);
    ///@}

    /// Integer bounding box of the conic. Unlike GetEllBoundary, left and top are rounded
    /// without the 1e-10 epsilon (v + 0.5 or v - 0.5 by sign, truncated); both roundings are
    /// kept as they are. Same failures as GetEllBoundary; the border is untouched then.
    static int GetEllipseBorder(const ELLPARAM& param, RECT& border);
    ///@{
    /// Device-space border of the ellipse inscribed in rc as t carries it (inverse as above).
    static int GetEllipseBorder(const RECT& rc, const ATransform& t, RECT& border);
    static int GetEllipseBorder(const RECTD& rc, const ATransform& t, RECT& border);
    ///@}
    /// Bounding box of the ellipse inscribed in rc and turned by angle about the integer
    /// centre, with a deliberate two-pixel margin on every side. A square, or an angle near
    /// 0 or pi, gives rc unchanged. A rectangle narrower or lower than one pixel (not a
    /// square) has no extreme points: the box is then the centre inflated by the margin.
    static void GetEllipseBorder(const RECT& rc, double angle, RECT& border);

    // ======================================================================================
    // Points on the ellipse
    // ======================================================================================

    /// Where the ray from the centre at `angle` meets the conic. A null centre is computed
    /// from the bounds (failing with them). Near 0, pi and 2pi the ray is horizontal, near
    /// pi/2 and 3pi/2 vertical; otherwise y = cy + tan(angle)*(x - cx). Fails (0, out
    /// untouched) on a negative discriminant or a vanishing linear fallback.
    static int EllipsePoint(const ELLPARAM& param, const POINTD* center, double angle, POINTD& out);
    /// The same with an integer centre; out is the rounded point, written even on failure
    /// (then (0, 0)).
    static int EllipsePoint(const ELLPARAM& param, const POINT* center, double angle, POINT& out);
    ///@{
    /// The same with bound.ptCenter as the centre (from GetEllBoundary); the integer form
    /// writes the rounded point even on failure (then (0, 0)).
    static int EllipsePoint(const ELLPARAM& param, const ELLBOUND& bound, double angle,
                            POINTD& out);
    static int EllipsePoint(const ELLPARAM& param, const ELLBOUND& bound, double angle, POINT& out);
    ///@}
    ///@{
    /// The ray is cast in the rectangle's own space (centre and angle there), then the point
    /// is carried forward by t. On failure out is untouched.
    static int EllipsePoint(const RECTD& rc, const ATransform& t, const POINTD* center,
                            double angle, POINTD& out);
    static int EllipsePoint(const RECT& rc, const ATransform& t, const POINTD* center, double angle,
                            POINTD& out);
    ///@}
    ///@{
    /// Integer form, rounding twice on purpose: the point in the rectangle's space is
    /// rounded (half away) and written to out even on failure; on success that integer point
    /// is carried by t and rounded again.
    static int EllipsePoint(const RECTD& rc, const ATransform& t, const POINT* center, double angle,
                            POINT& out);
    static int EllipsePoint(const RECT& rc, const ATransform& t, const POINT* center, double angle,
                            POINT& out);
    ///@}

    // ======================================================================================
    // Rectangles
    // ======================================================================================

    /// The corners (left, top), (left, bottom), (right, bottom), (right, top), in this order.
    static void RectVertex(const RECT& rc, POINT pts[4]);

    // ======================================================================================
    // Outlines (closed lists of 8-connected pixels; the arrays are resized by the call)
    // ======================================================================================

    /// The pixels of the segment p1-p2 (both ends included), from p1 to p2, one per step of
    /// the longer axis (midpoint/Bresenham rule). Returns the number of pixels.
    static int MidPointLine(POINT p1, POINT p2, CArray<POINT>& pts);
    /// Per-row x of the segment p1-p2 relative to `origin`: xs[i] is x - origin.x of the
    /// segment's first pixel (in the order p1 to p2) on row origin.y + i, for the rows from
    /// origin.y through the segment's lowest row; rows between origin.y and the segment's
    /// first row hold the x of its upper end. Returns the number of rows; 0 (xs emptied) when
    /// the whole segment lies above origin.y or spans more than kMaxExtent rows.
    static int MidPointLine(POINT p1, POINT p2, POINT origin, CArray<int>& xs);
    /// Outline of the circle inscribed in rc (diameter = the smaller of width and height,
    /// centred in rc). Empty for an empty rectangle.
    static void MidPointCircle(const CRect& rc, CArray<POINT>& pts);
    /// Outline of the ellipse inscribed in rc turned by angle about its centre. Circles, and
    /// angles near 0 and pi, give the axis-aligned midpoint outline (see the protected
    /// MidPointEllipse(const CRect&, ...)); other angles are traced as the transformed form.
    static void MidPointEllipse(const RECT& rc, double angle, CArray<POINT>& pts);
    ///@{
    /// Outline of the ellipse inscribed in rc as t carries it into device space, traced
    /// octant by octant from its top pixel (the routines EllSep0..EllSep7), counter-clockwise
    /// on the screen: top, left, bottom, right. Pixels are chosen by their centres, as the
    /// spans are, so the outline lies on the filled area's rim. Where a tip is sharper than
    /// the grid and the tracers cannot continue, the rest is the point reflection of the
    /// traced part through the centre; any step left longer than one pixel is bridged by a
    /// segment, so the result is always a closed chain of 8-connected pixels without repeats.
    /// Empty when the conic fails, the transform is singular or the shape is too large. Every
    /// exception while tracing is caught: the library's message 20 ("insufficient memory") is
    /// shown through ZelDialogMsg and the outline is left empty.
    static void MidPointEllipse(const RECT& rc, const ATransform& t, CArray<POINT>& pts);
    static void MidPointEllipse(const RECTD& rc, const ATransform& t, CArray<POINT>& pts);
    ///@}
    ///@{
    /// The part of that outline from the point at angle a1 to the point at angle a2 (angles
    /// in the rectangle's own space, located with EllipsePoint), sweeping in the direction of
    /// increasing angle there; a1 == a2 (after normalisation) gives the whole outline starting
    /// at a1. Empty when the outline is empty or a ray fails. Exceptions as above.
    static void MidPointArc(const RECT& rc, const ATransform& t, double a1, double a2,
                            CArray<POINT>& pts);
    static void MidPointArc(const RECTD& rc, const ATransform& t, double a1, double a2,
                            CArray<POINT>& pts);
    ///@}
    /// Outline of the quadrilateral pts[0]-pts[1]-pts[2]-pts[3] (closed; each corner once).
    static void MidPointParalgram(const POINT pts[4], CArray<POINT>& out);
    /// Outline of rc turned by angle (corners from RotateRect).
    static void MidPointRect(const RECT& rc, double angle, CArray<POINT>& pts);
    /// Outline of rc carried by t (corners of RectVertex, mapped and rounded half away).
    static void MidPointRect(const RECT& rc, const ATransform& t, CArray<POINT>& pts);
    /// Spans of the ellipse inscribed in rc turned by angle about the rectangle's exact centre,
    /// at any angle. A pixel belongs to the ellipse when its centre lies inside or on it, or
    /// when it holds one of the ellipse's four extreme points (an extreme on a pixel border
    /// belongs to the inner pixel); a row between the top and bottom extremes that covers no
    /// pixel centre gets the pixel under the middle of its chord. So rows are consecutive
    /// with one run each, thin ellipses keep their tips, the runs' box is the pixel box of
    /// the exact extent, and a quarter turn exchanges the box's width and height whenever
    /// width and height have the same parity. `border` (when given) follows the runs: top =
    /// first row, bottom = first row + rows, left = least start, right = greatest end + 1.
    /// Returns the first row (as a 64-bit value); for an empty or too large shape no spans,
    /// an empty border and rc.top.
    static INT64 MidPointEllipseLine(const CRect& rc, double angle, CArray<POINT>& spans,
                                     RECT* border);

    // ======================================================================================
    // Scan-line spans: one inclusive run per row; entry i is the row first + i
    // ======================================================================================

    /// Spans of the ellipse inscribed in rc and turned by angle. Width or height below 1: no
    /// spans, empty border, rc.top. 1 x 1: one pixel. Width 1 or 2, or height 1 or 2: the
    /// rectangle's spans (RectRasterLine). Circles at any angle and ellipses near 0 or pi
    /// use the axis-aligned midpoint profile; near pi/2 or 3pi/2 the profile with width and
    /// height exchanged about the centre, whose border is (cx - h/2, cy - w/2,
    /// cx + h/2 + (h & 1), cy + w/2 + (w & 1)) (the formula of that case, which can differ by
    /// a row from the runs). Other angles: MidPointEllipseLine. The centre (cx, cy) is
    /// computed with C integer division (truncation toward zero), so with an odd width and a
    /// negative left + right the runs sit one pixel right of the rectangle; kept so for
    /// compatibility with existing hosts. The row parity of the exchanged case follows the
    /// rectangle's own height (one row more or fewer than its width when parities differ).
    static int EllipseRasterLine(const CRect& rc, double angle, CArray<POINT>& spans, RECT* border);
    /// The array form into the record, then rcBound made inclusive (right and bottom - 1)
    /// and counts set to 1 per row.
    static int EllipseRasterLine(const RECT& rc, double angle, RSRLINE& line);
    ///@{
    /// Spans of the ellipse inscribed in rc as t carries it into device space (the pixel rule
    /// of MidPointEllipseLine). No spans, an empty border and floor(rc.top) (saturated) for
    /// an empty rectangle, a singular or non-finite t, or a too large shape. The RECTD array form
    /// catches every exception, shows the library's message 20 through ZelDialogMsg and leaves the
    /// spans empty.
    static int EllipseRasterLine(const RECT& rc, const ATransform& t, RSRLINE& line);
    static int EllipseRasterLine(const RECTD& rc, const ATransform& t, RSRLINE& line);
    static int EllipseRasterLine(const RECT& rc, const ATransform& t, CArray<POINT>& spans,
                                 RECT* border);
    static int EllipseRasterLine(const RECTD& rc, const ATransform& t, CArray<POINT>& spans,
                                 RECT* border);
    ///@}

    /// Spans of rc turned by angle about its centre. Near 0 or pi: one run (left, right - 1)
    /// per row from top to bottom - 1, border = rc. Near pi/2 or 3pi/2: the exchanged
    /// rectangle of GetRectBorder, filled. Otherwise by the pixel rule of MidPointEllipseLine:
    /// the pixels whose centres lie in the turned rectangle and those holding its corners. Empty
    /// rc: no spans, empty border, rc.top.
    static int RectRasterLine(const RECT& rc, double angle, CArray<POINT>& spans, RECT* border);
    /// Spans of rc carried by t (the same pixel rule; a degenerate image gives its one-pixel
    /// wide trace). The identity gives rc's own rows and columns.
    static int RectRasterLine(const RECT& rc, const ATransform& t, CArray<POINT>& spans,
                              RECT* border);
    ///@{
    /// The array forms into the record, as EllipseRasterLine(const RECT&, double, RSRLINE&) does.
    static int RectRasterLine(const RECT& rc, double angle, RSRLINE& line);
    static int RectRasterLine(const RECT& rc, const ATransform& t, RSRLINE& line);
    ///@}

    /// Bounding box of rc turned by angle. Empty rc (width or height not positive) or an
    /// angle near 0 or pi: rc. Near pi/2 or 3pi/2: the exchanged rectangle about the integer
    /// centre. Otherwise from RotateRect's corners, with a margin of 2 on the right and bottom
    /// edges only (deliberately not on the left and top).
    static void GetRectBorder(const RECT& rc, double angle, RECT& border);
    /// Bounding box of rc carried by t, in pixels: the pixels whose centres lie within the box
    /// of the four mapped corners (left = ceil(min x - 0.5), right = floor(max x - 0.5) + 1,
    /// likewise for y; at least one pixel each way). The identity gives rc. Empty rc gives rc.
    static void GetRectBorder(const RECT& rc, const ATransform& t, RECT& border);

protected:
    // Helpers of the routines above, reachable from derived classes (and tests).

    ///@{
    /// Topmost point of the conic, rounded by PrecisePoint. 0 on a degenerate conic.
    static int GetTopPoint(const ELLPARAM& param, POINT& out);
    static int GetTopPoint(double a, double b, double c, double d, double e, double f, POINT& out);
    ///@}
    ///@{
    /// On the centred form p*x^2 + q*y^2 + r*x*y = s: the extreme point in y on the side of
    /// positive y (GetTopPoint) or in x on the side of positive x (GetRightPoint). A
    /// vanishing denominator sounds the platform beep (nothing on this system) and gives 0.
    static int GetTopPoint(double p, double q, double r, double s, POINT& out);
    static int GetRightPoint(double p, double q, double r, double s, POINT& out);
    ///@}
    ///@{
    /// Octant code 0..7 of the outward gradient at pt (which tracer EllSepN continues there).
    static int EllPointSite(const ELLPARAM& param, const POINT& pt);
    static int EllPointSite(const ELLPARAM& param, const POINTD& pt);
    ///@}
    /// The class's own rounding: each coordinate rounded to 8 decimals through text, then
    /// floor, plus one when the unrounded fraction is at least 0.499999999999. Values
    /// beyond the 32-bit range saturate; NaN gives 0.
    static void PrecisePoint(double x, double y, POINT& out);
    /// Corners of rc turned about its integer centre (truncated); returns the quadrant code
    /// trunc(2*angle/pi) % 4 (0 near 0, pi/2, pi, 3pi/2; negative for negative angles; 0 for
    /// a non-finite angle or one beyond 1e15 quarter turns).
    static int RotateRect(const RECT& rc, double angle, POINT pts[4]);

    /// Quadrant profile of the ellipse with semi-axes a, b: b + 1 half-widths, top row first.
    /// A negative b throws std::invalid_argument (array index).
    static void MidPointEllipse(int a, int b, CArray<int>& profile);
    /// Quadrant profile of the circle of radius r (empty for r <= 0).
    static void MidPointCircle(int r, CArray<int>& profile);
    /// Outline pixels of the ellipse inscribed in rc, axis-aligned: one- and two-pixel sizes in
    /// their fixed orders; larger ones as a closed 8-connected chain counter-clockwise on the
    /// screen from the top, symmetric about the rectangle's centre lines (an even size has both
    /// middle columns or rows), within rc (when left + right and top + bottom are not negative
    /// and odd: the centre uses C division, as the spans do). Empty for an empty rc.
    static void MidPointEllipse(const CRect& rc, CArray<POINT>& pts);

    ///@{
    /// One octant of a conic outline by the midpoint method (see ellsep.cpp): from (x, y),
    /// storing pixels at pts[count], count advanced. 1 when the octant ended (gradient left
    /// it, or `stop` passed), 0 when more than maxSteps pixels were stored: they are then
    /// withdrawn and (x, y) restored from pts[count - 1] (std::invalid_argument when there is
    /// none). EllSep7 returns 0 in every case, deliberately; its result carries no meaning.
    static int EllSep0(const ELLPARAM& p, int& x, int& y, int& count, const int& maxSteps,
                       POINT* stop, CArray<POINT>& pts);
    static int EllSep1(const ELLPARAM& p, int& x, int& y, int& count, const int& maxSteps,
                       POINT* stop, CArray<POINT>& pts);
    static int EllSep2(const ELLPARAM& p, int& x, int& y, int& count, const int& maxSteps,
                       POINT* stop, CArray<POINT>& pts);
    static int EllSep3(const ELLPARAM& p, int& x, int& y, int& count, const int& maxSteps,
                       POINT* stop, CArray<POINT>& pts);
    static int EllSep4(const ELLPARAM& p, int& x, int& y, int& count, const int& maxSteps,
                       POINT* stop, CArray<POINT>& pts);
    static int EllSep5(const ELLPARAM& p, int& x, int& y, int& count, const int& maxSteps,
                       POINT* stop, CArray<POINT>& pts);
    static int EllSep6(const ELLPARAM& p, int& x, int& y, int& count, const int& maxSteps,
                       POINT* stop, CArray<POINT>& pts);
    static int EllSep7(const ELLPARAM& p, int& x, int& y, int& count, const int& maxSteps,
                       POINT* stop, CArray<POINT>& pts);
    ///@}
    /// Signature of the octant tracers EllSep0..EllSep7.
    using EllSepFn = int (*)(const ELLPARAM&, int&, int&, int&, const int&, POINT*, CArray<POINT>&);
    /// The eight tracers in the order EllSep0..EllSep7, indexed by EllPointSite's code.
    static const EllSepFn m_EllSep[8];

    /// Spans of the convex quadrilateral whose corners are center + pts[i] (pixel corner
    /// coordinates, in order around it), by the pixel rule of MidPointEllipseLine (centres
    /// inside, plus the pixels holding the corners), limited to the rows top to bottom - 1
    /// and with runs clamped to [left, right - 1]. Returns the first row; no spans and top
    /// when the box is empty, the shape misses it or is too large.
    static int PlgRasterLine(const POINT pts[4], const POINT& center, int left, int top, int right,
                             int bottom, CArray<POINT>& spans);
};
