#pragma once
#include <QString>
#include <QStringList>

class ConfigurationHost;
class HardwareModel;
class Register;

// The older kind of configuration: a text of "#define <PERIPHERAL>_<REGISTER>
// <value>" lines, as exported headers hold them. It goes by registers, not by
// elements: each value is spread over the elements that claim the
// register's bits.
class OldConfigurationLoader
{
public:
    OldConfigurationLoader(ConfigurationHost &host, HardwareModel &model);

    // Opens the description the file names and applies its values; false
    // when the file or its description can't be read. The old file is kept
    // as "<name>.bak".
    bool load(const QString &fileName);

    // Applies a value text to the elements of a register.
    static void applyToRegister(const Register *reg, const QString &valueText);

    // "#define <name>" lines that matched no register.
    QStringList unresolved;
    // Registers of the form that the file did not mention.
    QStringList unseen;

private:
    ConfigurationHost &m_host;
    HardwareModel &m_model;
};
