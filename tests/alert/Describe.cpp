#include "alert/Describe.h"

#include <algorithm>
#include <map>
#include <optional>
#include <stdexcept>
#include <type_traits>

#include <QLabel>

namespace {

// The names of alignments, breaks and blurs that descriptions use.
const std::map<QString, int> values{{"Left", 0},   {"Center", 1}, {"Right", 2}, {"Head", 3}, {"Tail", 4},
                                    {"Middle", 5}, {"Extra", 0},  {"Light", 1}, {"Dark", 2}};

template <typename Value>
Value parsed(const QString& text) {
  const QStringList parts = text.split(text.contains('*') ? '*' : ',');
  if constexpr (std::is_same_v<Value, QColor>) {
    return QColor::isValidColor(text) ? QColor(text) : QColor();
  } else if constexpr (std::is_same_v<Value, QFont>) {
    const QString size = QString(text).remove("bold").remove("fixed");
    if (text.startsWith("fixed")) return fixedPitchFontOfSize(size.toDouble());
    return text.startsWith("bold") ? boldSystemFontOfSize(size.toDouble())
                                   : systemFontOfSize(size.toDouble());
  } else if constexpr (std::is_same_v<Value, QPixmap>) {
    QPixmap picture(parts.value(1).toInt(), parts.value(1).toInt());
    picture.fill(parsed<QColor>(parts[0]));
    return picture;
  } else if constexpr (std::is_same_v<Value, QPointF>) {
    return {parts[0].toDouble(), parts.value(1).toDouble()};
  } else if constexpr (std::is_arithmetic_v<Value> || std::is_enum_v<Value>) {
    return static_cast<Value>(values.contains(text) ? values.at(text) : text.toDouble());
  } else if constexpr (std::is_same_v<Value, std::optional<UIBlurEffectStyle>>) {
    return text == "none" ? Value() : parsed<UIBlurEffectStyle>(text);
  } else {
    return nullptr;
  }
}

template <typename Value>
QString shown(const Value& value) {
  if constexpr (std::is_same_v<Value, QColor>) {
    if (!value.isValid()) return "none";
    QStringList parts;
    for (const float part : {value.redF(), value.greenF(), value.blueF(), value.alphaF()})
      parts << QString::number(part, 'g', 3);
    return parts.join(',');
  } else if constexpr (std::is_same_v<Value, QFont>) {
    return (value.bold() ? "bold" : "") + QString::number(value.pointSizeF() * 96 / 72);
  } else if constexpr (std::is_same_v<Value, QPointF>) {
    return QString("%1,%2").arg(value.x()).arg(value.y());
  } else if constexpr (std::is_arithmetic_v<Value> || std::is_enum_v<Value>) {
    return QString::number(static_cast<double>(value), 'g', 16);
  } else if constexpr (std::is_same_v<Value, QPixmap>) {
    return value.isNull() ? "none" : "set";
  } else {
    return value ? "set" : "none";
  }
}

template <typename Read, typename Write>
LookProperty property(const char* name, const char* shared, const char* own, Read read, Write write) {
  using Value = std::decay_t<std::invoke_result_t<Read, const RQAlertView&>>;
  return {name, shared, own, [read](const RQAlertView& dialog) { return shown<Value>((dialog.*read)()); },
          [write](RQAlertView& dialog, const QString& text) { (dialog.*write)(parsed<Value>(text)); }};
}

void changeButton(RQAlertView& dialog, std::size_t index, const QString& key, const QString& value) {
  if (key == "enabled") return dialog.setButtonEnabled(value != "0", index);
  dialog.setButtonPropertiesAtIndex(index, [&](RQAlertViewButtonProperties& properties) {
    if (key == "icon") properties.iconImage = parsed<QPixmap>(value);
    if (key == "iconHighlighted") properties.iconImageHighlighted = parsed<QPixmap>(value);
    if (key == "iconDisabled") properties.iconImageDisabled = parsed<QPixmap>(value);
    if (key == "lines") properties.numberOfLines = value.toInt();
  });
}

const LookProperty& propertyNamed(const QString& name) {
  const auto named = std::find_if(lookProperties().begin(), lookProperties().end(),
                                  [&name](const LookProperty& each) { return each.name == name; });
  if (named == lookProperties().end()) throw std::invalid_argument("no property " + name.toStdString());
  return *named;
}

}  // namespace

const std::vector<LookProperty>& lookProperties() {
#define PROPERTY(name, setter, shared, own) \
  property(#name, shared, own, &RQAlertView::name, &RQAlertView::setter)
  static const std::vector<LookProperty> all{
#include "alert/defaults.inc"
  };
  return all;
}

QString lookOf(const RQAlertView& dialog, const QString& name) {
  return propertyNamed(name).read(dialog);
}

void change(RQAlertView& dialog, const QString& changes) {
  for (const QString& change : changes.split(' ', Qt::SkipEmptyParts)) {
    const QString key = change.section('=', 0, 0);
    const QString value = change.section('=', 1);
    if (key.startsWith("text") && key.size() == 5) {
      dialog.textFieldsArray().at(key.mid(4).toULongLong())->setText(QString(value).replace('_', ' '));
      continue;
    }
    if (key.startsWith("placeholder")) {
      dialog.textFieldsArray().at(key.mid(11).toULongLong())->setPlaceholder(value);
      continue;
    }
    if (const QString button = key.section('.', 0, 0); key.contains('.')) {
      changeButton(dialog, button.mid(6).toULongLong(), key.section('.', 1), value);
      continue;
    }
    propertyNamed(key).write(dialog, value);
  }
}

Dialog dialogFrom(const QString& description) {
  QStringList words = description.split(' ', Qt::SkipEmptyParts);
  const auto style = words.takeFirst() == "sheet" ? RQAlertViewStyle::ActionSheet : RQAlertViewStyle::Alert;
  std::map<QString, QString> given{{"title", "Title"}};
  QStringList rest;
  for (const QString& word : words) {
    const QString key = word.section('=', 0, 0);
    QString value = word.section('=', 1).replace('_', ' ').replace("\\n", "\n");
    if (QStringList{"title", "message", "buttons", "cancel", "destructive", "fields", "label", "progress",
                    "view"}
            .contains(key))
      given[key] = value.isNull() ? "" : value;
    else
      rest << word;
  }
  const auto at = [&given](const char* key) { return given.contains(key) ? given.at(key) : QString(); };
  const QStringList buttons = given.contains("buttons") ? at("buttons").split(',') : QStringList();
  const auto made = [&]() -> Dialog {
    if (given.contains("fields"))
      return RQAlertView::alertViewWithTextFieldsAndTitle(at("title"), at("message"),
                                                          at("fields").toULongLong(), nullptr, buttons,
                                                          at("cancel"), at("destructive"));
    if (given.contains("progress"))
      return RQAlertView::alertViewWithProgressViewAndTitle(at("title"), at("message"), style,
                                                            at("progress").toDouble(), at("label"), buttons,
                                                            at("cancel"), at("destructive"));
    if (given.contains("label"))
      return RQAlertView::alertViewWithActivityIndicatorAndTitle(
          at("title"), at("message"), style, at("label"), buttons, at("cancel"), at("destructive"));
    if (given.contains("view")) {
      auto* view = new QLabel("A view");
      view->setMinimumHeight(at("view").toInt());
      return RQAlertView::alertViewWithViewAndTitle(at("title"), at("message"), style, view, buttons,
                                                    at("cancel"), at("destructive"));
    }
    return RQAlertView::alertViewWithTitle(at("title"), at("message"), style, buttons, at("cancel"),
                                           at("destructive"));
  }();
  change(*made, rest.join(' '));
  return made;
}
