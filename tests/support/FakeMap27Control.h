#pragma once

#include "core/texts/Errors.h"
#include "radio/line/Map27Control.h"

#include <QHash>
#include <QStringList>
#include <utility>

// A radio that records what it is asked to do and answers nothing by itself; the test raises its events.
class FakeMap27Control : public Map27Control {
public:
    // Operations so far, "SendStatusMessage 0 20 5".
    QStringList operations;
    // The description that the operation of this name raises; none raises without an entry.
    QHash<QString, QString> failures;
    LinkStatus link;

    // What the radio reports of itself.
    qint16 radioPrefix = 0;
    qint16 radioIdent = 0;
    qint16 unitBase = 0, unitMax = 0, groupBase = 0, groupMax = 0;
    bool twoDigits = true;

    QStringList TakeOperations() { return std::exchange(operations, {}); }

    void SetCommPort(const QString& port) override { Record("SetCommPort", {port}); }
    void SetBaudRate(int baud) override { Record("SetBaudRate", {QString::number(baud)}); }
    qint16 RadioPrefix() const override { return radioPrefix; }
    qint16 RadioIdent() const override { return radioIdent; }
    qint16 UnitBaseIdent() const override { return unitBase; }
    qint16 GroupBaseIdent() const override { return groupBase; }
    qint16 UnitMaxIdent() const override { return unitMax; }
    qint16 GroupMaxIdent() const override { return groupMax; }
    bool UnitTwoDigit() const override { return twoDigits; }
    bool GroupTwoDigit() const override { return twoDigits; }

    void OpenLink() override { Record("OpenLink"); }
    void CloseLink() override { Record("CloseLink"); }
    void SendRegroupCommand(qint16 memberPrefix, qint16 memberIdent, qint16 pos, qint16 groupPrefix,
                            qint16 groupIdent) override
    {
        Record("SendRegroupCommand", Texts(memberPrefix, memberIdent, pos, groupPrefix, groupIdent));
    }
    void SendGroupNameCommand(qint16 prefix, qint16 ident, qint16 pos, const QString& name) override
    {
        Record("SendGroupNameCommand", Texts(prefix, ident, pos) << name);
    }
    void RequestRadioInfo(qint16 kind) override { Record("RequestRadioInfo", Texts(kind)); }
    void ResetLink(qint32 pause) override { Record("ResetLink", Texts(pause)); }
    void SendStatusMessage(qint16 prefix, qint16 ident, qint16 status) override
    {
        Record("SendStatusMessage", Texts(prefix, ident, status));
    }
    void SendTextMessage(qint16 prefix, qint16 ident, const QString& text, bool eightBit) override
    {
        Record("SendTextMessage", Texts(prefix, ident) << text << Flag(eightBit));
    }
    void CancelTransaction() override { Record("CancelTransaction"); }
    void MakeCall(qint16 prefix, qint16 ident, bool emergency, bool priority, bool dialog) override
    {
        Record("MakeCall", Texts(prefix, ident) << Flag(emergency) << Flag(priority) << Flag(dialog));
    }
    void AnswerCall(bool accept) override { Record("AnswerCall", {Flag(accept)}); }
    void SetTransmit(bool on) override { Record("SetTransmit", {Flag(on)}); }
    void ClearCall() override { Record("ClearCall"); }
    void HangUpRadio() override { Record("HangUpRadio"); }
    void MakeGatewayCall(qint32 gateway, const QString& digits, bool emergency, bool priority,
                         bool dialog) override
    {
        Record("MakeGatewayCall", Texts(gateway)
                                      << digits << Flag(emergency) << Flag(priority) << Flag(dialog));
    }
    LinkStatus Link() const override { return link; }

private:
    template <typename... Number> static QStringList Texts(Number... numbers)
    {
        return {QString::number(numbers)...};
    }
    static QString Flag(bool on) { return on ? QStringLiteral("on") : QStringLiteral("off"); }

    void Record(const char* name, const QStringList& arguments = {})
    {
        operations.append((QStringList(QLatin1String(name)) + arguments).join(QLatin1Char(' ')));
        if (failures.contains(QLatin1String(name)))
            throw Error(ErrorCode::General, failures.value(QLatin1String(name)));
    }
};
