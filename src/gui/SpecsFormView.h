// The "Specs" page of a standard: the specs it may use, grouped by scope,
// with a check box each, the buttons that make, rename, move, copy, delete
// and open specs, "Apply" and "Help...".
#pragma once

#include "editors/SpecsEditor.h"
#include "gui/PageView.h"

#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QTableWidget>
#include <optional>

// Asks for a spec's name and place (New..., Copy...) or its place alone
// (Move...).
class CSpecPlaceDialog : public QDialog {
    Q_OBJECT
public:
    // `name` nullopt: no name is asked for. `current` is chosen at first.
    CSpecPlaceDialog(const QString& title, const QString& prompt,
                     const std::optional<QString>& name,
                     const std::vector<SSpecPlaceChoice>& places, const SSpecPlace& current,
                     QWidget* parent = nullptr);

    QString Name() const;
    SSpecPlace Place() const;

private:
    std::vector<SSpecPlaceChoice> m_places;
    QLineEdit* m_name = nullptr;
    QComboBox* m_place;
};

class CSpecsFormView : public CEditorPageView<CSpecsEditor> {
    Q_OBJECT
public:
    CSpecsFormView(CStandardsCore& core, IPageHost& host, std::int32_t standardId,
                   QWidget* parent = nullptr);

    QTableWidget* Grid() const { return m_grid; }
    // The editor's row of a grid row; nullopt for a group's heading.
    std::optional<std::size_t> EditorRow(int gridRow) const;

protected:
    void Refresh() override;

private:
    // Shows the rows afresh with the pipe spec of editor row `select` chosen.
    void Fill(std::optional<std::size_t> select = std::nullopt);
    std::optional<std::size_t> CurrentRow() const;
    void UpdateButtons();
    void NewSpec();
    void MoveSpec();
    void CopySpec();
    // A check or a name typed in the grid.
    void ItemEdited(QTableWidgetItem* item);

    QLabel* m_empty; // says why the grid is empty
    QTableWidget* m_grid;
    QPushButton* m_new;
    QPushButton* m_rename;
    QPushButton* m_move;
    QPushButton* m_copy;
    QPushButton* m_delete;
    QPushButton* m_openFolder;
};
