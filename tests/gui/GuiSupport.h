// What the desktop tests share: a core over a temporary datafiles folder with
// scripted answers to every question and file dialog.
#pragma once

#include "gui/DeskCore.h"
#include "gui/FileDialogs.h"
#include "platform/IniRegistry.h"
#include "support/TestSupport.h"

#include <QApplication>
#include <QTest>
#include <deque>

class CScriptedFileDialogs : public IFileDialogs {
public:
    std::deque<QStringList> answers;
    QStringList titles;

    QString SaveFile(QWidget*, const QString& title, const QString&, const QString&) override {
        titles << title;
        return Next().value(0);
    }
    QStringList OpenFiles(QWidget*, const QString& title, const QString&, const QString&) override {
        titles << title;
        return Next();
    }
    QString Folder(QWidget*, const QString& title, const QString&) override {
        titles << title;
        return Next().value(0);
    }

private:
    QStringList Next() {
        if (answers.empty())
            return {};
        QStringList answer = answers.front();
        answers.pop_front();
        return answer;
    }
};

// A temporary datafiles folder with the shipped templates, its own registry
// files, and the core over them.
struct SGuiWorld {
    test::CDatafilesFixture folder;
    test::CTempDir config;
    test::CScriptedPrompter prompter;
    CScriptedFileDialogs dialogs;
    CDeskCore core{std::make_unique<CIniRegistry>(config.File(L"machine"), config.File(L"user")),
                   folder.Dir().Text(), prompter};
};
