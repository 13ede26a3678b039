#include "Graphics/RenderInterface/OpenGL/RenderTarget.h"

#include "Core/Assert.h"

namespace grindle::gfx {

namespace {

int MipLevels(int width, int height) {
  int levels = 1;
  for (int size = width > height ? width : height; size > 1; size /= 2) ++levels;
  return levels;
}

}  // namespace

RenderTarget::~RenderTarget() { Release(); }

void RenderTarget::Release() {
  if (colorTexture_ != 0) glDeleteTextures(1, &colorTexture_);
  if (depthTexture_ != 0) glDeleteTextures(1, &depthTexture_);
  if (framebuffer_ != 0) glDeleteFramebuffers(1, &framebuffer_);
  colorTexture_ = depthTexture_ = framebuffer_ = 0;
}

void RenderTarget::Create(int width, int height, bool withColour, GLenum format) {
  GRINDLE_ASSERT(width <= 0 || height <= 0, "Render target size must be positive");
  Release();
  width_ = width;
  height_ = height;
  glCreateFramebuffers(1, &framebuffer_);

  glCreateTextures(GL_TEXTURE_2D, 1, &depthTexture_);
  glTextureStorage2D(depthTexture_, 1, GL_DEPTH_COMPONENT32F, width, height);
  glTextureParameteri(depthTexture_, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
  glTextureParameteri(depthTexture_, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
  glTextureParameteri(depthTexture_, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
  glTextureParameteri(depthTexture_, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
  glNamedFramebufferTexture(framebuffer_, GL_DEPTH_ATTACHMENT, depthTexture_, 0);

  if (withColour) {
    glCreateTextures(GL_TEXTURE_2D, 1, &colorTexture_);
    glTextureStorage2D(colorTexture_, MipLevels(width, height), format, width, height);
    glTextureParameteri(colorTexture_, GL_TEXTURE_MIN_FILTER, GL_LINEAR_MIPMAP_LINEAR);
    glTextureParameteri(colorTexture_, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTextureParameteri(colorTexture_, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTextureParameteri(colorTexture_, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    glNamedFramebufferTexture(framebuffer_, GL_COLOR_ATTACHMENT0, colorTexture_, 0);
    glNamedFramebufferDrawBuffer(framebuffer_, GL_COLOR_ATTACHMENT0);
  } else {
    glNamedFramebufferDrawBuffer(framebuffer_, GL_NONE);
    glNamedFramebufferReadBuffer(framebuffer_, GL_NONE);
  }
  GRINDLE_ASSERT(
      glCheckNamedFramebufferStatus(framebuffer_, GL_FRAMEBUFFER) != GL_FRAMEBUFFER_COMPLETE,
      "Render target framebuffer is incomplete");
}

void RenderTarget::Begin(const glm::vec4& clearColor) {
  glBindFramebuffer(GL_FRAMEBUFFER, framebuffer_);
  glViewport(0, 0, width_, height_);
  // Clears obey the write masks; a pass that left depth writes off must not keep the old depth.
  glDepthMask(GL_TRUE);
  glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
  glStencilMask(0xFFu);
  if (colorTexture_ != 0) glClearNamedFramebufferfv(framebuffer_, GL_COLOR, 0, &clearColor[0]);
  const float depth = 1.0f;
  glClearNamedFramebufferfv(framebuffer_, GL_DEPTH, 0, &depth);
}

void RenderTarget::End() {
  if (colorTexture_ != 0) glGenerateTextureMipmap(colorTexture_);
}

}  // namespace grindle::gfx
