// SPDX-License-Identifier: MIT
#include <PCore/state/PValueTree.h>

PValueTree::Entry* PValueTree::Object::add(const QString& name, qsizetype position) {
    if (index.contains(name))
        return nullptr;
    index.insert(name, entries.size());
    Entry& entry = entries.emplace_back();
    entry.name = name;
    entry.position = position;
    return &entry;
}

const PValueTree::Entry* PValueTree::Object::find(const QString& name) const {
    const auto found = index.find(name);
    return found == index.end() ? nullptr : &entries[*found];
}

QStringList PValueTree::Object::names(bool ofObjects) const {
    QStringList result;
    for (const Entry& entry : entries) {
        if ((entry.object != nullptr) == ofObjects)
            result.append(entry.name);
    }
    return result;
}

void PValueTree::setRoot(Object&& root) {
    m_path.clear();
    m_root = std::move(root);
}

bool PValueTree::enter(const QString& name) {
    const Entry* entry = current().find(name);
    if (!entry || !entry->object)
        return false;
    m_path.push_back(entry->object.get());
    return true;
}

void PValueTree::leave() {
    if (!m_path.empty())
        m_path.pop_back();
}

QVariant PValueTree::value(const QString& name) const {
    const Entry* entry = current().find(name);
    return entry ? entry->value : QVariant();
}
