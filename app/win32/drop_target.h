// Files dropped on a window from the file manager.
#pragma once

#include <windows.h>

#include <ole2.h>

#include <functional>
#include <string>

namespace zimbrat::app {

// Lives as long as its window, whatever the system's count of references says.
class DropTarget : public IDropTarget {
 public:
  // `takes` tells whether the file would be taken now; `take` takes it.
  DropTarget(std::function<bool(const std::u16string& path)> takes,
             std::function<void(const std::u16string& path)> take)
      : takes_(std::move(takes)), take_(std::move(take)) {}
  virtual ~DropTarget() = default;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE DragEnter(IDataObject* data, DWORD keys, POINTL place,
                                      DWORD* effect) override;
  HRESULT STDMETHODCALLTYPE DragOver(DWORD keys, POINTL place, DWORD* effect) override;
  HRESULT STDMETHODCALLTYPE DragLeave() override;
  HRESULT STDMETHODCALLTYPE Drop(IDataObject* data, DWORD keys, POINTL place,
                                 DWORD* effect) override;

 private:
  void Look(IDataObject* data);
  bool Takes() const;

  std::function<bool(const std::u16string& path)> takes_;
  std::function<void(const std::u16string& path)> take_;
  std::u16string file_;  // what is held over the window; empty for other things
};

}  // namespace zimbrat::app
