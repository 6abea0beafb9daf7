#include "framework/types/Schema.h"

#include <QString>

#include <ostream>

namespace Qor::Chart::Types {

Schema Schema::Dark() {
    Schema schema;
    schema.clearColor = QColor(30, 32, 36);
    schema.titleColor = QColor(130, 145, 165);
    schema.selectionColor = QColor(80, 160, 255);
    schema.textColor = QColor(235, 235, 235);
    schema.foregroundColor = QColor(200, 200, 200);
    schema.gridColor = QColor(70, 74, 80);
    schema.borderColor = QColor(110, 110, 110);
    schema.disabledColor = QColor(100, 100, 100);
    return schema;
}

std::ostream& operator<<(std::ostream& p_stream, Schema const& p_schema) {
    auto const color = [](QColor const& p_color) { return p_color.name(QColor::HexArgb).toStdString(); };
    return p_stream << "title bar height: " << p_schema.titleBarHeight
                    << ", rubber band margin: " << p_schema.rubberBandMargin << ", font size: " << p_schema.fontSize
                    << ", line width: " << p_schema.lineWidth << ", point size: " << p_schema.pointSize
                    << ", font family: \"" << p_schema.fontFamily << "\", clear: " << color(p_schema.clearColor)
                    << ", title: " << color(p_schema.titleColor) << ", highlight: " << color(p_schema.highlightColor)
                    << ", selection: " << color(p_schema.selectionColor) << ", text: " << color(p_schema.textColor)
                    << ", foreground: " << color(p_schema.foregroundColor) << ", grid: " << color(p_schema.gridColor)
                    << ", border: " << color(p_schema.borderColor) << ", disabled: " << color(p_schema.disabledColor);
}

} // namespace Qor::Chart::Types
