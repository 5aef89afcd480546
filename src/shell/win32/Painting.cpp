#include "shell/win32/Painting.h"

#include <ole2.h>
#include <olectl.h>

#include <algorithm>
#include <cmath>

#include "platform/win32/Ansi.h"

namespace tamrix::win32 {

COLORREF ToColorRef(Color c) {
  // A colour with the top bit set names a system colour by its index.
  if (c & 0x80000000u) return GetSysColor(static_cast<int>(c & 0xFF));
  return static_cast<COLORREF>(c & 0xFFFFFF);
}

namespace {

COLORREF Shade(COLORREF c, double f) {
  auto ch = [f](int v) { return static_cast<BYTE>(std::clamp(static_cast<int>(v * f), 0, 255)); };
  return RGB(ch(GetRValue(c)), ch(GetGValue(c)), ch(GetBValue(c)));
}

COLORREF Mix(COLORREF a, COLORREF b, double t) {
  auto ch = [t](int x, int y) { return static_cast<BYTE>(x + (y - x) * t); };
  return RGB(ch(GetRValue(a), GetRValue(b)), ch(GetGValue(a), GetGValue(b)), ch(GetBValue(a), GetBValue(b)));
}

void Fill(HDC dc, const RECT& r, COLORREF c) {
  HBRUSH b = CreateSolidBrush(c);
  FillRect(dc, &r, b);
  DeleteObject(b);
}

void Frame(HDC dc, const RECT& r, COLORREF c, int round = 0, COLORREF fill = CLR_INVALID) {
  HPEN pen = CreatePen(PS_SOLID, 1, c);
  HGDIOBJ oldPen = SelectObject(dc, pen);
  HBRUSH brush = fill == CLR_INVALID ? nullptr : CreateSolidBrush(fill);
  HGDIOBJ oldBrush = SelectObject(dc, brush ? static_cast<HGDIOBJ>(brush) : GetStockObject(NULL_BRUSH));
  if (round > 0)
    RoundRect(dc, r.left, r.top, r.right, r.bottom, round, round);
  else
    Rectangle(dc, r.left, r.top, r.right, r.bottom);
  SelectObject(dc, oldBrush);
  SelectObject(dc, oldPen);
  if (brush) DeleteObject(brush);
  DeleteObject(pen);
}

void VerticalGradient(HDC dc, const RECT& r, COLORREF top, COLORREF bottom) {
  int h = std::max<int>(1, r.bottom - r.top);
  for (int y = r.top; y < r.bottom; ++y) {
    RECT line{r.left, y, r.right, y + 1};
    Fill(dc, line, Mix(top, bottom, static_cast<double>(y - r.top) / h));
  }
}

void Text(HDC dc, const std::string& utf8, RECT r, UINT format, COLORREF colour, HFONT font) {
  std::string ansi = ToAnsi(utf8);
  HGDIOBJ old = SelectObject(dc, font);
  SetBkMode(dc, TRANSPARENT);
  SetTextColor(dc, colour);
  DrawTextA(dc, ansi.c_str(), static_cast<int>(ansi.size()), &r, format);
  SelectObject(dc, old);
}

// Draws a picture at (x, y), at width by height (its own size when these are 0).
void DrawPicture(HDC dc, HBITMAP bmp, int x, int y, int width, int height, Color mask, bool transparent) {
  if (!bmp) return;
  BITMAP info{};
  GetObject(bmp, sizeof info, &info);
  if (width == 0) width = info.bmWidth;
  if (height == 0) height = info.bmHeight;
  HDC mem = CreateCompatibleDC(dc);
  HGDIOBJ old = SelectObject(mem, bmp);
  SetStretchBltMode(dc, HALFTONE);
  if (transparent)
    TransparentBlt(dc, x, y, width, height, mem, 0, 0, info.bmWidth, info.bmHeight, ToColorRef(mask));
  else
    StretchBlt(dc, x, y, width, height, mem, 0, 0, info.bmWidth, info.bmHeight, SRCCOPY);
  SelectObject(mem, old);
  DeleteDC(mem);
}

SIZE PictureSize(HBITMAP bmp) {
  BITMAP info{};
  if (bmp) GetObject(bmp, sizeof info, &info);
  return {info.bmWidth, info.bmHeight};
}

HFONT Bold(Resources& res, const FontSpec& f) {
  FontSpec b = f;
  b.bold = true;
  return res.Font(b);
}

void PaintPanel(HDC dc, const RECT& rc, Control& c, Resources& res) {
  COLORREF back = ToColorRef(c.BackColor());
  Fill(dc, rc, back);
  const bool titled = !c.Caption().empty();
  if (titled) {
    RECT band{rc.left + 1, rc.top + 1, rc.right - 1, rc.top + 20};
    VerticalGradient(dc, band, Shade(back, 0.86), back);
    RECT text{rc.left + 8, rc.top + 1, rc.right - 8, rc.top + 20};
    COLORREF title = c.Enabled() ? ToColorRef(c.ForeColor()) : GetSysColor(COLOR_GRAYTEXT);
    Text(dc, c.Caption(), text, DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX, title, Bold(res, c.design().font));
    HPEN pen = CreatePen(PS_SOLID, 1, Shade(back, 0.78));
    HGDIOBJ old = SelectObject(dc, pen);
    MoveToEx(dc, rc.left + 6, rc.top + 20, nullptr);
    LineTo(dc, rc.right - 6, rc.top + 20);
    SelectObject(dc, old);
    DeleteObject(pen);
  }
  Frame(dc, rc, Shade(back, 0.62), 9);
}

void PaintGroup(HDC dc, const RECT& rc, Control& c, Resources& res) {
  Fill(dc, rc, ToColorRef(c.BackColor()));
  RECT edge{rc.left, rc.top + 7, rc.right, rc.bottom};
  DrawEdge(dc, &edge, EDGE_ETCHED, BF_RECT);
  if (!c.Caption().empty()) {
    HFONT font = res.Font(c.design().font);
    std::string ansi = ToAnsi(c.Caption());
    HGDIOBJ old = SelectObject(dc, font);
    SIZE sz{};
    GetTextExtentPoint32A(dc, ansi.c_str(), static_cast<int>(ansi.size()), &sz);
    SelectObject(dc, old);
    RECT gap{rc.left + 6, rc.top, rc.left + 10 + sz.cx, rc.top + sz.cy};
    Fill(dc, gap, ToColorRef(c.BackColor()));
    RECT text{rc.left + 8, rc.top, rc.right, rc.top + sz.cy};
    Text(dc, c.Caption(), text, DT_SINGLELINE, ToColorRef(c.ForeColor()), font);
  }
}

void PaintLabel(HDC dc, const RECT& rc, Control& c, Resources& res) {
  UINT align = c.design().alignment == 1 ? DT_RIGHT : c.design().alignment == 2 ? DT_CENTER : DT_LEFT;
  UINT wrap = c.design().wordWrap ? DT_WORDBREAK : DT_SINGLELINE;
  COLORREF fore = c.Enabled() ? ToColorRef(c.ForeColor()) : GetSysColor(COLOR_GRAYTEXT);
  Text(dc, c.Caption(), rc, align | wrap, fore, res.Font(c.design().font));
}

void PaintButton(HDC dc, const RECT& rc, TamrixCmd& b, Resources& res, bool pressed) {
  COLORREF face = ToColorRef(b.FaceColor());
  RECT body = rc;
  InflateRect(&body, -1, -1);
  VerticalGradient(dc, body, pressed ? Shade(face, 0.9) : face, pressed ? face : Shade(face, 0.9));
  Frame(dc, rc, b.Hovered() || pressed ? RGB(0x4A, 0x6E, 0xA8) : RGB(0x8A, 0x92, 0x9E), 5);
  int shift = pressed ? 1 : 0;

  RECT text = rc;
  HBITMAP pic = res.Picture(b.design().picture);
  if (pic) {
    // The picture stands at the side and the text takes the room beside it; on a narrow button
    // the picture shrinks rather than the text being cut.
    SIZE sz = PictureSize(pic);
    std::string ansi = ToAnsi(b.Caption());
    HGDIOBJ old = SelectObject(dc, res.Font(b.design().font));
    SIZE tx{};
    GetTextExtentPoint32A(dc, ansi.c_str(), static_cast<int>(ansi.size()), &tx);
    SelectObject(dc, old);
    int side = std::min<int>({sz.cx, sz.cy, static_cast<int>(rc.right) - tx.cx - 12, static_cast<int>(rc.bottom) - 6});
    if (b.design().centerPicture || ansi.empty()) side = std::min<int>(sz.cx, sz.cy);
    if (side >= 10) {  // a button too narrow for both keeps its words
      int x = b.design().centerPicture ? (rc.right - side) / 2 : 5;
      int y = (rc.bottom - side) / 2;
      DrawPicture(dc, pic, x + shift, y + shift, side, side, b.design().maskColor, true);
      if (!b.design().centerPicture) text.left = x + side + 2;
    }
  }
  OffsetRect(&text, shift, shift);
  UINT align = b.design().centerText ? DT_CENTER : DT_LEFT;
  if (!b.design().centerText && !pic) text.left += 8;
  COLORREF fore = b.Enabled() ? ToColorRef(b.ForeColor()) : GetSysColor(COLOR_GRAYTEXT);
  Text(dc, b.Caption(), text, align | DT_SINGLELINE | DT_VCENTER, fore, res.Font(b.design().font));
}

void PaintMark(HDC dc, const RECT& rc, Control& c, Resources& res, bool round, bool on) {
  int size = 13;
  int top = (rc.bottom - size) / 2;
  RECT box{rc.left + 1, top, rc.left + 1 + size, top + size};
  if (round) {
    Frame(dc, box, RGB(0x5A, 0x6A, 0x80), size + 1, RGB(255, 255, 255));
    if (on) {
      RECT dot = box;
      InflateRect(&dot, -4, -4);
      Frame(dc, dot, RGB(0x20, 0x40, 0x80), 6, RGB(0x20, 0x40, 0x80));
    }
  } else {
    Frame(dc, box, RGB(0x5A, 0x6A, 0x80), 0, RGB(255, 255, 255));
    if (on) {
      HPEN pen = CreatePen(PS_SOLID, 2, RGB(0x10, 0x70, 0x20));
      HGDIOBJ old = SelectObject(dc, pen);
      MoveToEx(dc, box.left + 3, box.top + 6, nullptr);
      LineTo(dc, box.left + 5, box.top + 9);
      LineTo(dc, box.left + 10, box.top + 3);
      SelectObject(dc, old);
      DeleteObject(pen);
    }
  }
  RECT text{box.right + 5, rc.top, rc.right, rc.bottom};
  COLORREF fore = c.Enabled() ? ToColorRef(c.ForeColor()) : GetSysColor(COLOR_GRAYTEXT);
  Text(dc, c.Caption(), text, DT_SINGLELINE | DT_VCENTER, fore, res.Font(c.design().font));
}

void PaintBar(HDC dc, const RECT& rc, TamrixPBar& bar, Resources& res) {
  COLORREF fill = ToColorRef(bar.design().barColor);
  double share = bar.Shown() / 100.0;
  if (bar.design().progressType == 1) {
    // The round face: a dial filled clockwise from noon.
    int d = std::min(rc.right, rc.bottom) - 2;
    RECT dial{(rc.right - d) / 2, (rc.bottom - d) / 2, (rc.right - d) / 2 + d, (rc.bottom - d) / 2 + d};
    Frame(dc, dial, RGB(0x70, 0x78, 0x88), d, RGB(0xF4, 0xF4, 0xF4));
    if (share > 0) {
      HBRUSH brush = CreateSolidBrush(fill);
      HPEN pen = CreatePen(PS_SOLID, 1, Shade(fill, 0.7));
      HGDIOBJ ob = SelectObject(dc, brush), op = SelectObject(dc, pen);
      int cx = (dial.left + dial.right) / 2, cy = (dial.top + dial.bottom) / 2;
      if (share >= 1.0) {
        Ellipse(dc, dial.left, dial.top, dial.right, dial.bottom);
      } else {
        double a = 3.14159265358979 / 2 - share * 2 * 3.14159265358979;
        int ex = cx + static_cast<int>(d * std::cos(a)), ey = cy - static_cast<int>(d * std::sin(a));
        Pie(dc, dial.left, dial.top, dial.right, dial.bottom, ex, ey, cx, dial.top - d);
      }
      SelectObject(dc, ob);
      SelectObject(dc, op);
      DeleteObject(brush);
      DeleteObject(pen);
    }
  } else {
    Frame(dc, rc, RGB(0x70, 0x78, 0x88), 0, RGB(0xF4, 0xF4, 0xF4));
    int inner = rc.right - 4;
    int width = static_cast<int>(inner * share);
    // Blocks rather than a smooth run.
    int block = std::max<LONG>(4, (rc.bottom - 4) * 2 / 3);
    for (int x = 0; x < width; x += block + 2) {
      RECT b{2 + x, 2, 2 + std::min(x + block, width), rc.bottom - 2};
      Fill(dc, b, fill);
    }
  }
  if (bar.design().showCaption) {
    Text(dc, std::to_string(static_cast<int>(bar.Shown())) + "%", rc, DT_CENTER | DT_VCENTER | DT_SINGLELINE,
         RGB(0, 0, 0), res.Font(bar.design().font));
  }
}

}  // namespace

Resources::~Resources() {
  if (back_) {
    SelectObject(back_, backFirstBitmap_);
    DeleteObject(backBitmap_);
    DeleteDC(back_);
  }
  for (auto& [k, f] : fonts_) DeleteObject(f);
  for (auto& [k, b] : pictures_)
    if (b) DeleteObject(b);
}

HFONT Resources::Font(const FontSpec& font) {
  int height = -static_cast<int>(std::lround(font.size * 96.0 / 72.0));
  auto key = std::make_tuple(font.name, height, font.bold);
  auto it = fonts_.find(key);
  if (it != fonts_.end()) return it->second;
  HFONT f = CreateFontA(height, 0, 0, 0, font.bold ? FW_BOLD : FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                        OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH | FF_SWISS,
                        font.name.c_str());
  fonts_[key] = f;
  return f;
}

HDC Resources::BackBuffer(HDC screen, int width, int height) {
  width = std::max(1, width);
  height = std::max(1, height);
  if (!back_) back_ = CreateCompatibleDC(screen);
  if (width > backSize_.cx || height > backSize_.cy) {
    backSize_ = {std::max<LONG>(width, backSize_.cx), std::max<LONG>(height, backSize_.cy)};
    HBITMAP grown = CreateCompatibleBitmap(screen, backSize_.cx, backSize_.cy);
    HGDIOBJ was = SelectObject(back_, grown);
    if (backBitmap_) DeleteObject(backBitmap_);
    else backFirstBitmap_ = was;
    backBitmap_ = grown;
  }
  return back_;
}

HBITMAP Resources::Picture(const std::string& name) {
  if (name.empty()) return nullptr;
  auto it = pictures_.find(name);
  if (it != pictures_.end()) return it->second;
  std::string id = name;
  std::transform(id.begin(), id.end(), id.begin(), [](unsigned char ch) { return static_cast<char>(std::toupper(ch)); });
  auto bmp = static_cast<HBITMAP>(LoadImageA(instance_, id.c_str(), IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION));
  pictures_[name] = bmp;
  return bmp;
}

void PaintBehind(HDC dc, HWND window, Control& control, Resources& res) {
  Control* parent = control.Parent();
  RECT rc;
  GetClientRect(window, &rc);
  if (!parent) return;
  if (parent->kind() == Kind::Form) {
    POINT origin{0, 0};
    MapWindowPoints(window, GetParent(window), &origin, 1);
    HBITMAP pic = res.Picture(parent->design().picture);
    if (pic) {
      HDC mem = CreateCompatibleDC(dc);
      HGDIOBJ old = SelectObject(mem, pic);
      BitBlt(dc, 0, 0, rc.right, rc.bottom, mem, origin.x, origin.y, SRCCOPY);
      SelectObject(mem, old);
      DeleteDC(mem);
      return;
    }
  }
  Fill(dc, rc, ToColorRef(parent->BackColor()));
}

// A picture that the program loaded at run time (the platform's picture object), at its own size.
void DrawRuntimePicture(HDC dc, std::uint64_t handle, int at) {
  auto* pic = reinterpret_cast<IPicture*>(static_cast<ULONG_PTR>(handle));
  OLE_XSIZE_HIMETRIC w = 0;
  OLE_YSIZE_HIMETRIC h = 0;
  pic->get_Width(&w);
  pic->get_Height(&h);
  const int cx = MulDiv(w, GetDeviceCaps(dc, LOGPIXELSX), 2540);
  const int cy = MulDiv(h, GetDeviceCaps(dc, LOGPIXELSY), 2540);
  pic->Render(dc, at, at, cx, cy, 0, h, w, -h, nullptr);
}

void PaintControl(HDC dc, const RECT& rc, Control& c, Resources& res, bool pressed) {
  switch (c.kind()) {
    case Kind::TamrixFrm:
      PaintPanel(dc, rc, c, res);
      break;
    case Kind::Frame:
      PaintGroup(dc, rc, c, res);
      break;
    case Kind::Label:
      if (c.design().backStyle != 0) Fill(dc, rc, ToColorRef(c.BackColor()));
      PaintLabel(dc, rc, c, res);
      break;
    case Kind::PictureBox: {
      auto& box = static_cast<PictureBox&>(c);
      Fill(dc, rc, ToColorRef(c.BackColor()));
      if (box.Picture())
        DrawRuntimePicture(dc, box.Picture(), box.BorderStyle() ? 1 : 0);
      else
        DrawPicture(dc, res.Picture(c.design().picture), 0, 0, 0, 0, c.design().maskColor, false);
      if (box.BorderStyle() == 1) FrameRect(dc, &rc, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
      break;
    }
    case Kind::Image:
      if (static_cast<Image&>(c).Picture())
        DrawRuntimePicture(dc, static_cast<Image&>(c).Picture(), 0);
      else
        DrawPicture(dc, res.Picture(c.design().picture), 0, 0, 0, 0, c.design().maskColor, true);
      break;
    case Kind::TamrixCmd:
      PaintButton(dc, rc, static_cast<TamrixCmd&>(c), res, pressed);
      break;
    case Kind::TamrixCB:
      if (c.design().backStyle != 0) Fill(dc, rc, ToColorRef(c.BackColor()));
      PaintMark(dc, rc, c, res, false, static_cast<TamrixCB&>(c).Value() == 1);
      break;
    case Kind::TamrixOpButton:
    case Kind::OptionButton:
      if (c.design().backStyle != 0) Fill(dc, rc, ToColorRef(c.BackColor()));
      PaintMark(dc, rc, c, res, true, static_cast<OptionBase&>(c).Selected());
      break;
    case Kind::TamrixPBar:
      PaintBar(dc, rc, static_cast<TamrixPBar&>(c), res);
      break;
    default:
      break;
  }
}

}  // namespace tamrix::win32
