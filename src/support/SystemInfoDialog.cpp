// The system-information window: a read-only report that can be selected and copied.
#include "support/SystemInfoDialog.h"

#include "support/VersionRecord.h"

#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSysInfo>
#include <QVBoxLayout>
#include <algorithm>

namespace zorvik {

namespace {

QString padded(const QString& text, qsizetype width) {
    return text.leftJustified(width, QLatin1Char(' '));
}

} // namespace

SystemFacts SystemFacts::current() {
    const VersionRecord record = programVersionRecord();
    SystemFacts facts;
    facts.program = QString::fromStdString(record.title + " " + std::to_string(record.major) + "." +
                                           std::to_string(record.minor) + "." +
                                           std::to_string(record.revision));
    facts.osName = QSysInfo::prettyProductName();
    facts.osVersion = QSysInfo::productVersion();
    facts.kernel = QSysInfo::kernelType() + " " + QSysInfo::kernelVersion();
    facts.cpuArchitecture = QSysInfo::currentCpuArchitecture();
    facts.buildArchitecture = QSysInfo::buildCpuArchitecture();
    facts.qtRuntime = QString::fromLatin1(qVersion());
    facts.qtBuild = QStringLiteral(QT_VERSION_STR);
    return facts;
}

QString SystemInfoDialog::composeReport(const SystemFacts& facts,
                                        const QList<SerialPortRow>& ports) {
    QStringList lines;
    const auto fact = [&lines](const QString& name, const QString& value) {
        lines << padded(name, 18) + value;
    };
    fact("Program", facts.program);
    fact("Operating system", facts.osName);
    fact("OS version", facts.osVersion);
    fact("Kernel", facts.kernel);
    fact("CPU architecture",
         facts.cpuArchitecture == facts.buildArchitecture
             ? facts.cpuArchitecture
             : facts.cpuArchitecture + " (program built for " + facts.buildArchitecture + ")");
    fact("Qt version", facts.qtRuntime == facts.qtBuild
                           ? facts.qtRuntime
                           : facts.qtRuntime + " (program built with " + facts.qtBuild + ")");
    lines << QString() << "Serial ports";
    if (ports.isEmpty()) {
        lines << "  No serial ports are mapped.";
        return lines.join('\n');
    }
    qsizetype deviceWidth = 6;
    for (const SerialPortRow& row : ports)
        deviceWidth = std::max(deviceWidth, row.devicePath.size());
    const QString header =
        "  " + padded("Port", 7) + padded("Device", deviceWidth + 2) + "Present  Access  System";
    lines << header;
    bool others = false;
    for (const SerialPortRow& row : ports) {
        if (row.comName.isEmpty() && !others) {
            others = true;
            lines << QString() << "Other serial devices" << header;
        }
        QString line = "  " + padded(row.comName, 7) + padded(row.devicePath, deviceWidth + 2) +
                       padded(row.exists ? "yes" : "no", 9) +
                       padded(row.exists ? (row.accessible ? "yes" : "no") : "-", 8) + row.system;
        while (line.endsWith(' '))
            line.chop(1);
        lines << line;
    }
    return lines.join('\n');
}

SystemInfoDialog::SystemInfoDialog(const QList<SerialPortRow>& ports, QWidget* parent)
    : QDialog(parent), m_ports(ports) {
    setObjectName("SystemInfoDialog");
    setWindowTitle("System Information");
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);

    txtReport = new QPlainTextEdit(this);
    txtReport->setObjectName("txtReport");
    txtReport->setReadOnly(true);
    txtReport->setLineWrapMode(QPlainTextEdit::NoWrap);
    txtReport->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    txtReport->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));

    auto* buttons = new QDialogButtonBox(this);
    cmdCopy = buttons->addButton("&Copy", QDialogButtonBox::ActionRole);
    cmdCopy->setObjectName("cmdCopy");
    cmdClose = buttons->addButton(QDialogButtonBox::Close);
    cmdClose->setObjectName("cmdClose");
    connect(cmdCopy, &QPushButton::clicked, this,
            [this] { QApplication::clipboard()->setText(reportText()); });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(txtReport);
    layout->addWidget(buttons);
    resize(620, 380);
    refresh();
    cmdClose->setFocus();
}

void SystemInfoDialog::setSerialPorts(const QList<SerialPortRow>& ports) {
    m_ports = ports;
    refresh();
}

QString SystemInfoDialog::reportText() const {
    return txtReport->toPlainText();
}

void SystemInfoDialog::refresh() {
    txtReport->setPlainText(composeReport(SystemFacts::current(), m_ports));
}

} // namespace zorvik
