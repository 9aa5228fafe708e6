// The core's questions and messages as message boxes.
#pragma once

#include "store/Prompter.h"

#include <QPointer>
#include <QWidget>

class CQtPrompter : public IPrompter {
public:
    // Boxes are owned by `parent` when it is set (the main window, once it exists).
    void SetParent(QWidget* parent) { m_parent = parent; }
    EPromptAnswer Ask(const SPrompt& prompt) override;

private:
    QPointer<QWidget> m_parent;
};
