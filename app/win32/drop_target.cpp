#include "drop_target.h"

#include <shellapi.h>

#include "platform/win32/wide_text.h"
#include "suite/manners.h"

namespace zimbrat::app {
namespace {

// The file that is being dragged; empty for several of them and for other things.
std::u16string FileOf(IDataObject* data) {
  FORMATETC format = {CF_HDROP, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};
  STGMEDIUM medium = {};
  if (data == nullptr || FAILED(data->GetData(&format, &medium))) return {};
  const auto files = static_cast<HDROP>(medium.hGlobal);
  std::u16string path;
  if (::DragQueryFileW(files, 0xFFFFFFFF, nullptr, 0) == 1) {
    path.resize(::DragQueryFileW(files, 0, nullptr, 0) + 1);
    path.resize(::DragQueryFileW(files, 0, platform::LendRoom(path), static_cast<UINT>(path.size())));
  }
  ::ReleaseStgMedium(&medium);
  return path;
}

}  // namespace

HRESULT DropTarget::QueryInterface(REFIID id, void** object) {
  const bool isOurs = IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IDropTarget);
  *object = isOurs ? static_cast<IDropTarget*>(this) : nullptr;
  return isOurs ? S_OK : E_NOINTERFACE;
}

// The system knows no exceptions: a file that cannot be looked at is none.
void DropTarget::Look(IDataObject* data) {
  file_.clear();
  suite::Attempt([&] { file_ = FileOf(data); });
}

bool DropTarget::Takes() const {
  bool takes = false;
  suite::Attempt([&] { takes = !file_.empty() && takes_(file_); });
  return takes;
}

HRESULT DropTarget::DragEnter(IDataObject* data, DWORD keys, POINTL place, DWORD* effect) {
  Look(data);
  return DragOver(keys, place, effect);
}

HRESULT DropTarget::DragOver(DWORD, POINTL, DWORD* effect) {
  // One effect, of those that the source offers.
  const DWORD offered = *effect;
  *effect = DROPEFFECT_NONE;
  if (Takes()) *effect = (offered & DROPEFFECT_COPY) != 0 ? DROPEFFECT_COPY : offered & DROPEFFECT_LINK;
  return S_OK;
}

HRESULT DropTarget::DragLeave() {
  file_.clear();
  return S_OK;
}

HRESULT DropTarget::Drop(IDataObject* data, DWORD keys, POINTL place, DWORD* effect) {
  Look(data);
  DragOver(keys, place, effect);
  if (Takes()) suite::Attempt([&] { take_(file_); });
  return DragLeave();
}

}  // namespace zimbrat::app
