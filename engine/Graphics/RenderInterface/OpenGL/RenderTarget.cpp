#include "Graphics/RenderInterface/OpenGL/RenderTarget.h"

#include "Core/Assert.h"
#include "Graphics/RenderInterface/OpenGL/ImageMips.h"
#include "Graphics/RenderInterface/OpenGL/TextureCopy.h"

namespace grindle::gfx {

RenderTarget::~RenderTarget() { Release(); }

void RenderTarget::Release() {
  if (colorTexture_ != 0) glDeleteTextures(1, &colorTexture_);
  if (depthTexture_ != 0) glDeleteTextures(1, &depthTexture_);
  if (framebuffer_ != 0) glDeleteFramebuffers(1, &framebuffer_);
  colorTexture_ = depthTexture_ = framebuffer_ = 0;
}

void RenderTarget::Create(int width, int height, const TargetLayout& layout) {
  GRINDLE_ASSERT(width <= 0 || height <= 0, "Render target size must be positive");
  GRINDLE_ASSERT(!layout.colour && !layout.depth, "Render target has nothing to draw into");
  Release();
  width_ = width;
  height_ = height;
  layout_ = layout;
}

int RenderTarget::Levels() const { return layout_.mipChain ? MipLevelCount(width_, height_) : 1; }

void RenderTarget::Allocate() const {
  if (framebuffer_ != 0 || width_ <= 0) return;
  glCreateFramebuffers(1, &framebuffer_);

  if (layout_.depth) {
    glCreateTextures(GL_TEXTURE_2D, 1, &depthTexture_);
    glTextureStorage2D(depthTexture_, 1, GL_DEPTH_COMPONENT32F, width_, height_);
    glTextureParameteri(depthTexture_, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    glTextureParameteri(depthTexture_, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    glTextureParameteri(depthTexture_, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTextureParameteri(depthTexture_, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    glNamedFramebufferTexture(framebuffer_, GL_DEPTH_ATTACHMENT, depthTexture_, 0);
  }

  if (layout_.colour) {
    glCreateTextures(GL_TEXTURE_2D, 1, &colorTexture_);
    glTextureStorage2D(colorTexture_, Levels(), layout_.format, width_, height_);
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

GLuint RenderTarget::ColorTexture() const {
  Allocate();
  return colorTexture_;
}

GLuint RenderTarget::DepthTexture() const {
  Allocate();
  return depthTexture_;
}

void RenderTarget::Begin(const glm::vec4& clearColor) {
  Allocate();
  glBindFramebuffer(GL_FRAMEBUFFER, framebuffer_);
  glViewport(0, 0, width_, height_);
  // Clears obey the write masks; a pass that left depth writes off must not keep the old depth.
  glDepthMask(GL_TRUE);
  glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
  glStencilMask(0xFFu);
  if (colorTexture_ != 0) glClearNamedFramebufferfv(framebuffer_, GL_COLOR, 0, &clearColor[0]);
  if (depthTexture_ != 0) {
    const float depth = 1.0f;
    glClearNamedFramebufferfv(framebuffer_, GL_DEPTH, 0, &depth);
  }
}

void RenderTarget::End(const TextureCopy& copy) {
  if (colorTexture_ != 0) copy.GenerateMips(colorTexture_, width_, height_, Levels());
}

}  // namespace grindle::gfx
