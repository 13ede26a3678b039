#include "Graphics/RenderInterface/OpenGL/WindowContext.h"

#include <stb_image_write.h>

#include <vector>

#include "Core/Assert.h"
#include "Graphics/RenderInterface/OpenGL/TextureCopy.h"

namespace grindle::gfx {

WindowContext::~WindowContext() {
  if (IsCreated()) ReleaseBackBuffer();
}

bool WindowContext::Create(SDL_Window* window) {
  if (!context_.Create(window)) return false;
  // Depth 0..1 keeps the projection matrices as they are; the upper-left origin makes row 0 of
  // every target the top of the image, as texture coordinates (v = 0 at the top) expect.
  glClipControl(GL_UPPER_LEFT, GL_ZERO_TO_ONE);
  glEnable(GL_TEXTURE_CUBE_MAP_SEAMLESS);
  return true;
}

void WindowContext::ReleaseBackBuffer() {
  if (framebuffer_ != 0) glDeleteFramebuffers(1, &framebuffer_);
  if (colorBuffer_ != 0) glDeleteTextures(1, &colorBuffer_);
  if (depthBuffer_ != 0) glDeleteRenderbuffers(1, &depthBuffer_);
  framebuffer_ = colorBuffer_ = depthBuffer_ = 0;
}

void WindowContext::ResizeBackBuffer(int width, int height) {
  ReleaseBackBuffer();
  width_ = width > 0 ? width : 1;
  height_ = height > 0 ? height : 1;
  glCreateFramebuffers(1, &framebuffer_);
  glCreateTextures(GL_TEXTURE_2D, 1, &colorBuffer_);
  glTextureStorage2D(colorBuffer_, 1, GL_RGBA8, width_, height_);
  glCreateRenderbuffers(1, &depthBuffer_);
  glNamedRenderbufferStorage(depthBuffer_, GL_DEPTH24_STENCIL8, width_, height_);
  glNamedFramebufferTexture(framebuffer_, GL_COLOR_ATTACHMENT0, colorBuffer_, 0);
  glNamedFramebufferRenderbuffer(framebuffer_, GL_DEPTH_STENCIL_ATTACHMENT, GL_RENDERBUFFER,
                                 depthBuffer_);
  GRINDLE_ASSERT(
      glCheckNamedFramebufferStatus(framebuffer_, GL_FRAMEBUFFER) != GL_FRAMEBUFFER_COMPLETE,
      "Back buffer framebuffer is incomplete");
}

void WindowContext::BindBackBuffer() const {
  glBindFramebuffer(GL_FRAMEBUFFER, framebuffer_);
  glViewport(0, 0, width_, height_);
}

void WindowContext::ClearBackBuffer() const {
  static constexpr float kBlack[4] = {0.0f, 0.0f, 0.0f, 1.0f};
  glDepthMask(GL_TRUE);
  glStencilMask(0xFFu);
  glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
  glClearNamedFramebufferfv(framebuffer_, GL_COLOR, 0, kBlack);
  glClearNamedFramebufferfi(framebuffer_, GL_DEPTH_STENCIL, 0, 1.0f, 0);
}

bool WindowContext::Present(const TextureCopy& copy) {
  if (IsMinimized()) return false;
  int drawableWidth = 0, drawableHeight = 0;
  context_.DrawableSize(drawableWidth, drawableHeight);
  copy.CopyFlipped(colorBuffer_, 0, drawableWidth, drawableHeight);
  context_.SwapBuffers();
  return true;
}

void WindowContext::SetFullScreen(bool on) { context_.SetFullScreen(on); }

bool WindowContext::IsMinimized() const { return context_.IsMinimized(); }

bool WindowContext::WriteBackBufferPng(const std::string& fileName) const {
  if (width_ <= 0 || height_ <= 0 || framebuffer_ == 0) return false;
  std::vector<unsigned char> pixels(static_cast<size_t>(width_) * static_cast<size_t>(height_) *
                                    4u);
  glPixelStorei(GL_PACK_ALIGNMENT, 1);
  // Row 0 of the back buffer is the top of the image, which is the order PNG rows go in.
  glBindFramebuffer(GL_READ_FRAMEBUFFER, framebuffer_);
  glReadBuffer(GL_COLOR_ATTACHMENT0);
  glReadPixels(0, 0, width_, height_, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
  // The composite's alpha is not an image property; the file is opaque as the screen shows it.
  for (size_t i = 3; i < pixels.size(); i += 4) pixels[i] = 255;
  return stbi_write_png(fileName.c_str(), width_, height_, 4, pixels.data(), width_ * 4) != 0;
}

}  // namespace grindle::gfx
