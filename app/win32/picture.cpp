#include "picture.h"

#include <objidl.h>

#include <gdiplus.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace zimbrat::app {
namespace {

using Gdiplus::Color;
using Gdiplus::Graphics;
using Gdiplus::PointF;
using Gdiplus::RectF;

// The icon's colours, on a paler ground.
constexpr Gdiplus::ARGB kGroundTop = 0xFFF6FAFD;
constexpr Gdiplus::ARGB kGroundBottom = 0xFF9FC4E2;
constexpr Gdiplus::ARGB kBodyLeft = 0xFF4F86B8;
constexpr Gdiplus::ARGB kBodyShine = 0xFF8FBCE0;
constexpr Gdiplus::ARGB kBodyRight = 0xFF33618F;
constexpr Gdiplus::ARGB kLid = 0xFFC5DEF2;
constexpr Gdiplus::ARGB kOutline = 0xFF1F4568;
constexpr Gdiplus::ARGB kWand = 0xFF2B3440;
constexpr Gdiplus::ARGB kRim = 0xFFFFFFFF;
constexpr Gdiplus::ARGB kStar = 0xFFF6C343;
constexpr Gdiplus::ARGB kStarEdge = 0xFFA97A12;

constexpr float kWidth = 128;  // of the drawing, at 96 dots an inch

class GdiplusSession {
 public:
  GdiplusSession() {
    const Gdiplus::GdiplusStartupInput input;
    started_ = Gdiplus::GdiplusStartup(&token_, &input, nullptr) == Gdiplus::Ok;
  }
  ~GdiplusSession() {
    if (started_) Gdiplus::GdiplusShutdown(token_);
  }
  GdiplusSession(const GdiplusSession&) = delete;
  GdiplusSession& operator=(const GdiplusSession&) = delete;

  bool Started() const { return started_; }

 private:
  ULONG_PTR token_ = 0;
  bool started_ = false;
};

bool HighContrast() {
  HIGHCONTRASTW contrast = {};
  contrast.cbSize = sizeof contrast;
  return ::SystemParametersInfoW(SPI_GETHIGHCONTRAST, sizeof contrast, &contrast, 0) != 0 &&
         (contrast.dwFlags & HCF_HIGHCONTRASTON) != 0;
}

void DrawGround(Graphics& graphics, float height) {
  // A little larger than what it fills: at its own edge the gradient would start anew.
  const Gdiplus::LinearGradientBrush ground(PointF(0, -1), PointF(0, height + 1), Color(kGroundTop),
                                            Color(kGroundBottom));
  graphics.FillRectangle(&ground, RectF(-kWidth, 0, 3 * kWidth, height));
}

// Light around (x, y), gone at `radius`.
void DrawGlow(Graphics& graphics, float x, float y, float radius) {
  Gdiplus::GraphicsPath disc;
  disc.AddEllipse(x - radius, y - radius, 2 * radius, 2 * radius);
  Gdiplus::PathGradientBrush glow(&disc);
  glow.SetCenterColor(Color(0xE0FFF3CF));
  Color edge(0x00FFFFFF);
  int edges = 1;
  glow.SetSurroundColors(&edge, &edges);
  graphics.FillPath(&glow, &disc);
}

// A cylinder standing on `bottom`, with `tables` parts one over the other.
void DrawDatabase(Graphics& graphics, float left, float bottom, float width, float tableHeight,
                  int tables) {
  const float lid = width * 0.42F;
  const float top = bottom - lid - tableHeight * static_cast<float>(tables);
  Gdiplus::GraphicsPath body;
  body.AddArc(left, top, width, lid, 180, -180);
  body.AddArc(left, bottom - lid, width, lid, 0, 180);
  body.CloseFigure();

  Gdiplus::LinearGradientBrush side(PointF(left - 1, 0), PointF(left + width + 1, 0),
                                    Color(kBodyLeft), Color(kBodyRight));
  const std::array colors = {Color(kBodyLeft), Color(kBodyShine), Color(kBodyRight)};
  const std::array positions = {0.0F, 0.35F, 1.0F};
  side.SetInterpolationColors(colors.data(), positions.data(), static_cast<INT>(colors.size()));
  graphics.FillPath(&side, &body);

  const Gdiplus::SolidBrush lidBrush{Color(kLid)};
  Gdiplus::Pen outline(Color(kOutline), 1.5F);
  outline.SetLineJoin(Gdiplus::LineJoinRound);
  graphics.FillEllipse(&lidBrush, left, top, width, lid);
  graphics.DrawPath(&outline, &body);
  graphics.DrawEllipse(&outline, left, top, width, lid);
  for (int i = 1; i < tables; ++i)
    graphics.DrawArc(&outline, left, top + tableHeight * static_cast<float>(i), width, lid, 0, 180);
}

// A star around (x, y) with its first point upwards; between the points it reaches the share
// `inner` of `radius`.
template <std::size_t Points>
void DrawStar(Graphics& graphics, float x, float y, float radius, float inner) {
  std::array<PointF, 2 * Points> corners;
  for (std::size_t i = 0; i < corners.size(); ++i) {
    const float angle = std::numbers::pi_v<float> * static_cast<float>(i) / Points;
    const float reach = i % 2 == 0 ? radius : radius * inner;
    corners[i] = PointF(x + reach * std::sin(angle), y - reach * std::cos(angle));
  }
  const auto count = static_cast<INT>(corners.size());
  const Gdiplus::SolidBrush fill{Color(kStar)};
  Gdiplus::Pen edge(Color(kStarEdge), 1);
  edge.SetLineJoin(Gdiplus::LineJoinRound);
  graphics.FillPolygon(&fill, corners.data(), count);
  graphics.DrawPolygon(&edge, corners.data(), count);
}

void DrawWand(Graphics& graphics, PointF handle, PointF tip) {
  Gdiplus::Pen rim(Color(kRim), 10);
  Gdiplus::Pen stick(Color(kWand), 6.5F);
  for (Gdiplus::Pen* pen : {&rim, &stick}) {
    pen->SetLineCap(Gdiplus::LineCapRound, Gdiplus::LineCapRound, Gdiplus::DashCapRound);
    graphics.DrawLine(pen, handle, tip);
  }
  DrawStar<5>(graphics, tip.X, tip.Y, 21, 0.4F);
}

struct Sparkle {
  float x, y, radius;
};

// What the wand strews over the databases, as shares of the height.
constexpr std::array<Sparkle, 9> kSparkles = {{{98, 0.09F, 7},
                                               {30, 0.12F, 5},
                                               {112, 0.23F, 5},
                                               {24, 0.36F, 4},
                                               {16, 0.50F, 7},
                                               {70, 0.52F, 5},
                                               {42, 0.59F, 4},
                                               {104, 0.57F, 8},
                                               {60, 0.66F, 4}}};

void DrawScene(Graphics& graphics, float height) {
  DrawGround(graphics, height);
  const PointF tip(48, height * 0.24F);
  DrawGlow(graphics, tip.X, tip.Y, 70);
  DrawDatabase(graphics, 66, height - 44, 50, 22, 4);
  DrawDatabase(graphics, 10, height - 34, 46, 20, 3);
  DrawDatabase(graphics, 40, height - 14, 54, 20, 2);
  for (const Sparkle& sparkle : kSparkles)
    DrawStar<4>(graphics, sparkle.x, sparkle.y * height, sparkle.radius, 0.38F);
  DrawWand(graphics, PointF(tip.X + 52, tip.Y + 68), tip);
}

}  // namespace

void DrawPicture(HDC dc, const RECT& area, unsigned dpi) {
  const GdiplusSession session;
  if (HighContrast() || !session.Started()) {
    ::FillRect(dc, &area, ::GetSysColorBrush(COLOR_WINDOW));
    return;
  }
  const float scale = static_cast<float>(dpi) / 96;
  const auto width = static_cast<float>(area.right - area.left);
  const auto height = static_cast<float>(area.bottom - area.top);
  Graphics graphics(dc);
  graphics.SetClip(
      RectF(static_cast<float>(area.left), static_cast<float>(area.top), width, height));
  graphics.SetSmoothingMode(Gdiplus::SmoothingModeAntiAlias);
  graphics.SetPixelOffsetMode(Gdiplus::PixelOffsetModeHalf);
  // A wider or narrower area shows the middle.
  graphics.TranslateTransform(static_cast<float>(area.left) + (width - kWidth * scale) / 2,
                              static_cast<float>(area.top));
  graphics.ScaleTransform(scale, scale);
  DrawScene(graphics, height / scale);
}

}  // namespace zimbrat::app
