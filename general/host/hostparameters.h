#pragma once

#include <QPointer>
#include <QString>
#include <QVariant>
#include <QWidget>

class BackendVersions;
class IOManager;

/// What every module gets from its host, under the names of the contract. GUI thread only.
namespace hostparameters {

/// Puts the value into the one of these that `key` names; another key changes nothing. Nothing is
/// owned, the host keeps its objects.
void take(const QString& key, const QVariant& value, IOManager*& iom, QPointer<QWidget>& parent,
          BackendVersions*& versions);

} // namespace hostparameters
