#include "cli/SchemeChoice.h"

namespace voka::cli {

headless::DialogScript schemeChoice(const std::string& category, const std::string& scheme) {
    using headless::DialogAction;
    constexpr int kCategoryPopup = 3, kSchemePopup = 6, kOkButton = 9;
    headless::DialogScript script;
    script.dialog = "br_Dialog_2DDown_wChkBox";
    if (!category.empty()) script.actions.push_back({DialogAction::Kind::ChooseLabel, kCategoryPopup, category, 0});
    if (!scheme.empty()) script.actions.push_back({DialogAction::Kind::ChooseLabel, kSchemePopup, scheme, 0});
    script.actions.push_back({DialogAction::Kind::Press, kOkButton, "", 0});
    return script;
}

}  // namespace voka::cli
