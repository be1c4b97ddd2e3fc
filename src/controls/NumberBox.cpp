#include "controls/NumberBox.h"

#include <cmath>

#include <QRegularExpression>
#include <QValidator>

#include <Vk_DocQuery/Failure.h>

namespace Vk_DocQuery {

class NumberBox::Validator : public QValidator {
public:
    using QValidator::QValidator;

    double Lowest = -999999999999999.0;
    double Highest = 99999999999999.0;

    State validate(QString &aText, int & /*rCaret*/) const override {
        const bool minus = aText.startsWith(u'-');
        if (minus && Lowest >= 0) return Invalid;
        const QStringView digits = QStringView(aText).mid(minus ? 1 : 0);
        constexpr qsizetype theMostDigits = 15;  // any such number is a double to the last digit
        if (digits.size() > theMostDigits) return Invalid;
        for (const QChar digit : digits)
            if (digit < u'0' || digit > u'9') return Invalid;
        if (digits.isEmpty()) return minus ? Intermediate : Acceptable;
        const double number = aText.toDouble();
        // Further digits lead away from zero.
        if (minus ? number < Lowest : number > Highest) return Invalid;
        return number < Lowest || number > Highest ? Intermediate : Acceptable;
    }
};

NumberBox::NumberBox(QWidget *aParent) : TextBox(aParent), theValidator(new Validator(this)) {
    setValidator(theValidator);
}

void NumberBox::SetBounds(double aLowest, double aHighest) {
    theValidator->Lowest = aLowest;
    theValidator->Highest = aHighest;
}

LooseValue NumberBox::Value() const {
    bool isNumber = false;
    const double number = text().toDouble(&isNumber);
    if (!isNumber) return Empty();
    return number == 0 ? 0.0 : number;  // "-0" is no other number
}

void NumberBox::SetValue(const LooseValue &aValue) {
    const QString text = IsNull(aValue) ? QString() : ToText(aValue);
    if (text.isEmpty()) {
        clear();
        return;
    }
    bool isNumber = false;
    const double number = std::nearbyint(text.toDouble(&isNumber));
    if (!isNumber || number < theValidator->Lowest || number > theValidator->Highest) {
        throw Failure(InvalidArgument, QStringLiteral("NumberBox"),
                      QStringLiteral("Недопустимое значение числового поля: \"%1\".").arg(text));
    }
    setText(QString::number(static_cast<qint64>(number)));
}

/// Line ends and tabs inside part numbers, of which two make no third one.
void NumberBox::Enter(const QString &aForeign) {
    static const QRegularExpression blanks(QStringLiteral("[ \\p{Zs}]+"));
    static const QRegularExpression sign(QStringLiteral("^№+"));
    static const QRegularExpression minus(QStringLiteral("^[\\x{2212}\\x{2013}]"));
    QString number = aForeign.trimmed().remove(blanks).remove(sign);
    number.replace(minus, QStringLiteral("-"));
    if (!number.isEmpty()) InsertStep(number);
}

/// A number that is left is shown in the form "####0", without leading zeros; a lone minus is no
/// number.
void NumberBox::focusOutEvent(QFocusEvent *aEvent) {
    const LooseValue value = Value();
    const auto *number = std::get_if<double>(&value);
    const QString shown = number ? QString::number(static_cast<qint64>(*number)) : QString();
    if (shown != text()) setText(shown);
    TextBox::focusOutEvent(aEvent);
}

}  // namespace Vk_DocQuery
