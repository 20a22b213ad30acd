#pragma once

#include "orvaneplatform/orvaneplatform_global.h"

#include <QCoreApplication>
#include <QString>
#include <QStringList>

class QTranslator;

/// Texts for the user, in English. Translations are looked up in the context "Model".
namespace Orvane::BizModel::Translate {

/// Labels of the console's displays, cut after 32 bytes. %1 is the page, from 1.
/// @{
constexpr char TR_THE_PAGE[] = QT_TRANSLATE_NOOP("Model", "Page %1");
constexpr char TR_THE_FADE[] = QT_TRANSLATE_NOOP("Model", "Fade");
constexpr char TR_THE_FULL_SCREEN[] = QT_TRANSLATE_NOOP("Model", "Full screen");
constexpr char TR_THE_SL[] = QT_TRANSLATE_NOOP("Model", "SL");
constexpr char TR_THE_DL[] = QT_TRANSLATE_NOOP("Model", "DL");
constexpr char TR_THE_4K[] = QT_TRANSLATE_NOOP("Model", "4K");
constexpr char TR_THE_LOAD_TO_PGM[] = QT_TRANSLATE_NOOP("Model", "Load to PGM");
constexpr char TR_THE_LOAD_TO_PVW[] = QT_TRANSLATE_NOOP("Model", "Load to PVW");
/// @}

/// Texts about screens.
/// @{
constexpr char TR_THE_TAKE_WAIT[] = QT_TRANSLATE_NOOP("Model", "Taking,please wait...");
constexpr char TR_THE_ADDSCREEN_WAIT[] = QT_TRANSLATE_NOOP("Model", "Adding screen,please wait...");
constexpr char TR_THE_SCREEN_SCREENLIMIT[] =
    QT_TRANSLATE_NOOP("Model", "The number of screens exceeds the limit!");
/// @}

/// Texts about layers and inputs.
/// @{
constexpr char TR_THE_LAYER_SCREEN_TAKING[] =
    QT_TRANSLATE_NOOP("Model", "The current operation cannot be completed during the screen taking.");
constexpr char TR_THE_LAYER_LIMIT[] = QT_TRANSLATE_NOOP("Model", "The number of layers exceeds the limit.");
constexpr char TR_THE_LAYER_NO_MATCHING_INPUT[] =
    QT_TRANSLATE_NOOP("Model", "No matching input source found.");
constexpr char TR_THE_LAYER_NO_RESOURCES[] = QT_TRANSLATE_NOOP("Model", "Not enough resources.");
constexpr char TR_THE_LAYER_CLEAR_WAIT[] = QT_TRANSLATE_NOOP("Model", "Cleaning layers,please wait...");
constexpr char TR_THE_LAYER_CLEAR_PGM[] =
    QT_TRANSLATE_NOOP("Model", "Do you want to remove all the layers from PGM?");
constexpr char TR_THE_LAYER_CLEAR_PVW[] =
    QT_TRANSLATE_NOOP("Model", "Do you want to remove all the layers from PVW?");
constexpr char TR_THE_LAYER_NO_SL_INPUT[] =
    QT_TRANSLATE_NOOP("Model", "No SL input source, this operation cannot be completed.");
constexpr char TR_THE_LAYER_NO_DL_INPUT[] =
    QT_TRANSLATE_NOOP("Model", "No DL input source, this operation cannot be completed.");
constexpr char TR_THE_LAYER_NO_4K_INPUT[] =
    QT_TRANSLATE_NOOP("Model", "No 4K input source, this operation cannot be completed.");
constexpr char TR_THE_INPUT_SELECT_LAYER[] = QT_TRANSLATE_NOOP("Model", "Please select a layer first.");
/// @}

/// Texts about the function keys.
/// @{
constexpr char TR_THE_FUNCTION_SAVE_WAIT[] = QT_TRANSLATE_NOOP("Model", "Saving device data, please wait.");
constexpr char TR_THE_FUNCTION_SAVE_SUCCESS[] = QT_TRANSLATE_NOOP("Model", "save data successed.");
constexpr char TR_THE_FUNCTION_SAVE_FAILURE[] = QT_TRANSLATE_NOOP("Model", "save data failure.");
/// %1 is the highest number of layers.
constexpr char TR_THE_FUNCTION_LAYER_LIMIT[] = QT_TRANSLATE_NOOP("Model", "Layer count is more than %1");
/// @}

/// Texts about presets.
/// @{
constexpr char TR_THE_FUNCTION_CLEARALLPRESET[] =
    QT_TRANSLATE_NOOP("Model", "Are you sure you want to delete all the presets?");
constexpr char TR_THE_FUNCTION_CREATEPRESET[] = QT_TRANSLATE_NOOP("Model", "can't create PVW preset");
constexpr char TR_THE_PRESET_LOAD_TO_PGM[] =
    QT_TRANSLATE_NOOP("Model", "The preset will be directly loaded to PGM. Continue?");
constexpr char TR_THE_PRESET_DELETE_WAIT[] = QT_TRANSLATE_NOOP("Model", "Deleting preset,please wait...");
constexpr char TR_THE_PRESET_CLEAR_WAIT[] = QT_TRANSLATE_NOOP("Model", "Cleaning presets,please wait...");
/// @}

/// The text in the application's present language. Any thread.
inline QString tr(const char* text)
{
    return QCoreApplication::translate("Model", text);
}

/// The languages that this library brings translations for, such as "de". English is the texts' own.
ORVANEPLATFORM_EXPORT QStringList languages();

/// Makes the translator translate into one of `languages()`. The caller installs it, and calls
/// `ECManager::retranslateUi()` when the console is running. False, with nothing loaded, for another
/// language.
ORVANEPLATFORM_EXPORT bool loadLanguage(QTranslator& translator, const QString& language);

} // namespace Orvane::BizModel::Translate
