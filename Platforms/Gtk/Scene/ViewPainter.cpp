#include "Gtk/Scene/ViewPainter.h"

#include <optional>
#include <utility>

#include "Gtk/Scene/Textures.h"

namespace tavo::gtk {

namespace {

GdkRGBA rgba(const Color& color) {
  return {static_cast<float>(color.red), static_cast<float>(color.green),
          static_cast<float>(color.blue), static_cast<float>(color.alpha)};
}

graphene_rect_t graphene(const Rect& rect) {
  return {{static_cast<float>(rect.x), static_cast<float>(rect.y)},
          {static_cast<float>(rect.width), static_cast<float>(rect.height)}};
}

graphene_rect_t boundsOf(const Gtk::Widget& widget) {
  return graphene(
      {0, 0, static_cast<double>(widget.get_width()), static_cast<double>(widget.get_height())});
}

bool isSeen(const std::optional<Color>& color) { return color && color->alpha > 0; }

Pango::Alignment pangoAlignment(TextAlignment alignment) {
  switch (alignment) {
    case TextAlignment::left:
      return Pango::Alignment::LEFT;
    case TextAlignment::center:
      return Pango::Alignment::CENTER;
    case TextAlignment::right:
      return Pango::Alignment::RIGHT;
  }
  return Pango::Alignment::LEFT;
}

}  // namespace

bool ViewPainter::isNeededFor(const View& view) {
  return isSeen(view.backgroundColor()) || !view.backgroundPattern().empty() ||
         dynamic_cast<const ImageView*>(&view) != nullptr ||
         dynamic_cast<const Label*>(&view) != nullptr;
}

void ViewPainter::paint(const View& view) {
  paintBackground(view);
  if (const auto* image = dynamic_cast<const ImageView*>(&view)) paintImage(*image);
  if (const auto* label = dynamic_cast<const Label*>(&view)) paintLabel(*label);
}

void ViewPainter::paintBackground(const View& view) {
  if (isSeen(view.backgroundColor())) {
    const GdkRGBA color = rgba(*view.backgroundColor());
    const graphene_rect_t place = boundsOf(widget_);
    gtk_snapshot_append_color(snapshot_, &color, &place);
  }
  const Image& pattern = view.backgroundPattern();
  if (pattern.empty()) return;
  const graphene_rect_t bounds = graphene(view.bounds());
  const graphene_rect_t tile =
      graphene({0, 0, static_cast<double>(pattern.width()), static_cast<double>(pattern.height())});
  gtk_snapshot_push_repeat(snapshot_, &bounds, &tile);
  gtk_snapshot_append_texture(snapshot_, textureOf(pattern)->gobj(), &tile);
  gtk_snapshot_pop(snapshot_);
}

void ViewPainter::paintImage(const ImageView& view) {
  const Rect place = view.imageRect();
  if (place.empty()) return;
  const graphene_rect_t bounds = graphene(view.bounds());
  const graphene_rect_t target = graphene(place);
  gtk_snapshot_push_clip(snapshot_, &bounds);
  gtk_snapshot_append_texture(snapshot_, textureOf(view.image())->gobj(), &target);
  gtk_snapshot_pop(snapshot_);
}

void ViewPainter::paintLabel(const Label& label) {
  if (label.text().empty()) return;
  const auto layout = widget_.create_pango_layout(label.text());
  Pango::FontDescription font;
  font.set_family("Sans");
  font.set_absolute_size(label.fontSize() * Pango::SCALE);
  layout->set_font_description(font);
  layout->set_width(static_cast<int>(label.frame().width * Pango::SCALE));
  layout->set_ellipsize(Pango::EllipsizeMode::END);
  layout->set_alignment(pangoAlignment(label.alignment()));
  int width = 0;
  int height = 0;
  layout->get_pixel_size(width, height);
  const graphene_point_t start{0, static_cast<float>((label.frame().height - height) / 2)};
  const GdkRGBA color = rgba(label.textColor());
  gtk_snapshot_save(snapshot_);
  gtk_snapshot_translate(snapshot_, &start);
  gtk_snapshot_append_layout(snapshot_, layout->gobj(), &color);
  gtk_snapshot_restore(snapshot_);
}

// As a button has it: a light line on a dark one.
void ViewPainter::paintFocus() {
  const graphene_rect_t place = boundsOf(widget_);
  const std::pair<Color, float> lines[] = {{colors::black, 3.0F}, {colors::white, 2.0F}};
  for (const auto& [color, thickness] : lines) {
    GskRoundedRect outline;
    gsk_rounded_rect_init_from_rect(&outline, &place, 0);
    const float widths[] = {thickness, thickness, thickness, thickness};
    const GdkRGBA shade = rgba(color);
    const GdkRGBA shades[] = {shade, shade, shade, shade};
    gtk_snapshot_append_border(snapshot_, &outline, widths, shades);
  }
}

}  // namespace tavo::gtk
