#include "components/progress_wnd.h"

#include "platform/ui/front_end.h"

namespace loom {

// There is no window before GoModal; what is set until then has no effect.
struct CProgressWnd::Impl {
  bool can_cancel;
  std::unique_ptr<ProgressView> view = nullptr;
};

CProgressWnd::CProgressWnd(int with_cancel) : impl_(std::make_unique<Impl>(Impl{with_cancel != 0})) {}
CProgressWnd::~CProgressWnd() = default;

void CProgressWnd::GoModal(const CString& title, int) {
  impl_->view = CurrentFrontEnd().ShowProgress({.title = title, .can_cancel = impl_->can_cancel});
}

void CProgressWnd::SetText(const CString& text) {
  if (impl_->view) impl_->view->SetText(text);
}

void CProgressWnd::SetRange(int lower, int upper, int) {
  if (impl_->view) impl_->view->SetRange(lower, upper);
}

void CProgressWnd::SetPos(int position) {
  if (impl_->view) impl_->view->SetPos(position);
}

void CProgressWnd::PeekAndPump(int) {
  if (impl_->view) impl_->view->Pump();
}

int CProgressWnd::Cancelled() const { return impl_->view && impl_->view->Cancelled() ? 1 : 0; }

}  // namespace loom
