// Shared by the lit effects (basic.fx, BasicSkinned.fx, BasicInstanced.fx): light and material
// blocks, shadow maps, fog and the lighting of one surface point. Included into @common.
struct DirectionalLight {
  vec4 Ambient;
  vec4 Diffuse;
  vec4 Specular;
  vec3 Direction;
  float Pad;
};

struct SpotLight {
  vec4 Ambient;
  vec4 Diffuse;
  vec4 Specular;
  vec3 Position;
  float Range;
  vec3 Direction;
  float Spot;
  vec3 Att;
  float InnerAngle;
  float OuterAngle;
};

struct Material {
  vec4 Ambient;
  vec4 Diffuse;
  vec4 Specular;  // w: specular power
  vec4 Reflect;
};

layout(std140) uniform gDirLights { DirectionalLight dirLights[3]; };
layout(std140) uniform gSpotLights { SpotLight spotLights[2]; };
layout(std140) uniform gMaterial { Material material; };

uniform mat4 gTexTransform;
uniform vec3 gEyePosW;
uniform vec4 gFogColor;
uniform float gFogStart;
uniform float gFogRange;

uniform sampler2D gDiffuseMap;
uniform sampler2D gNormalMap;
uniform sampler2D gSpecularMap;
uniform mat4 gDirShadowTransforms[3];
uniform sampler2D gDirShadowMaps[3];
uniform mat4 gSpotShadowTransforms[2];
uniform sampler2D gSpotShadowMaps[2];
uniform float gDirFloateans[3];
uniform float gSpotFloateans[2];

#ifdef FRAGMENT_STAGE
float SpecularPower() { return max(material.Specular.w, 1.0); }

void DirectionalTerms(DirectionalLight light, vec3 normal, vec3 toEye, inout vec4 ambient,
                      inout vec4 diffuse, inout vec4 specular, float shadow) {
  ambient += material.Ambient * light.Ambient;
  vec3 lightVec = -light.Direction;
  float diffuseFactor = dot(lightVec, normal);
  if (diffuseFactor > 0.0) {
    vec3 reflected = reflect(-lightVec, normal);
    float specFactor = pow(max(dot(reflected, toEye), 0.0), SpecularPower());
    diffuse += shadow * diffuseFactor * material.Diffuse * light.Diffuse;
    specular += shadow * specFactor * material.Specular * light.Specular;
  }
}

void SpotTerms(SpotLight light, vec3 position, vec3 normal, vec3 toEye, inout vec4 ambient,
               inout vec4 diffuse, inout vec4 specular, float shadow) {
  vec3 lightVec = light.Position - position;
  float d = length(lightVec);
  if (d > light.Range) return;
  lightVec /= d;
  float cosAngle = dot(-lightVec, normalize(light.Direction));
  // The exponent narrows the beam; nothing reaches past the outer cone.
  float spot = cosAngle >= cos(radians(light.OuterAngle)) ? pow(max(cosAngle, 0.0), light.Spot) : 0.0;
  float attenuation = spot / max(dot(light.Att, vec3(1.0, d, d * d)), 0.0001);
  ambient += spot * material.Ambient * light.Ambient;
  float diffuseFactor = dot(lightVec, normal);
  if (diffuseFactor > 0.0) {
    vec3 reflected = reflect(-lightVec, normal);
    float specFactor = pow(max(dot(reflected, toEye), 0.0), SpecularPower());
    diffuse += shadow * attenuation * diffuseFactor * material.Diffuse * light.Diffuse;
    specular += shadow * attenuation * specFactor * material.Specular * light.Specular;
  }
}

// 1 where lit, 0 in shadow; 1 outside the map. Percentage-closer filtering over 3 x 3 taps, each
// tap comparing the four texels around it and weighing them by distance, so a shadow's edge fades
// over a few texels instead of stepping from texel to texel.
float ShadowFactor(sampler2D map, mat4 lightViewProj, vec3 positionW) {
  vec4 p = lightViewProj * vec4(positionW, 1.0);
  p.xyz /= p.w;
  vec2 uv = vec2(0.5 + 0.5 * p.x, 0.5 - 0.5 * p.y);
  if (uv.x < 0.0 || uv.x > 1.0 || uv.y < 0.0 || uv.y > 1.0 || p.z > 1.0 || p.w <= 0.0) return 1.0;
  vec2 size = vec2(textureSize(map, 0));
  vec2 texel = 1.0 / size;
  vec2 weight = fract(uv * size - 0.5);
  float lit = 0.0;
  for (int y = -1; y <= 1; ++y) {
    for (int x = -1; x <= 1; ++x) {
      // Gathered in the order (0,1) (1,1) (1,0) (0,0) of the 2 x 2 texels around the tap.
      vec4 depths = textureGather(map, uv + vec2(x, y) * texel, 0);
      vec4 passes = step(vec4(p.z - 0.0015), depths);
      lit += mix(mix(passes.w, passes.z, weight.x), mix(passes.x, passes.y, weight.x), weight.y);
    }
  }
  return lit / 9.0;
}

// Every light on one point; `receivesShadow` 0 turns the shadow lookups off.
vec4 LightPoint(vec3 positionW, vec3 normal, vec4 texColor, vec4 specularMask, float receivesShadow) {
  vec3 toEye = gEyePosW - positionW;
  float distToEye = length(toEye);
  toEye /= max(distToEye, 0.0001);
  vec4 ambient = vec4(0.0), diffuse = vec4(0.0), specular = vec4(0.0);
  for (int i = 0; i < 3; ++i) {
    float shadow = 1.0;
    if (receivesShadow > 0.5 && gDirFloateans[i] > 0.5) {
      shadow = ShadowFactor(gDirShadowMaps[i], gDirShadowTransforms[i], positionW);
    }
    DirectionalTerms(dirLights[i], normal, toEye, ambient, diffuse, specular, shadow);
  }
  for (int i = 0; i < 2; ++i) {
    float shadow = 1.0;
    if (receivesShadow > 0.5 && gSpotFloateans[i] > 0.5) {
      shadow = ShadowFactor(gSpotShadowMaps[i], gSpotShadowTransforms[i], positionW);
    }
    SpotTerms(spotLights[i], positionW, normal, toEye, ambient, diffuse, specular, shadow);
  }
  vec4 color = texColor * (ambient + diffuse) + specular * specularMask;
  float fog = clamp((distToEye - gFogStart) / gFogRange, 0.0, 1.0);
  color = mix(color, gFogColor, fog);
  color.a = material.Diffuse.a * texColor.a;
  return color;
}

// The normal-map sample in tangent space brought to world space.
vec3 BumpedNormal(vec3 normalW, vec3 tangentW, vec2 uv) {
  vec3 normalT = 2.0 * texture(gNormalMap, uv).rgb - 1.0;
  vec3 n = normalize(normalW);
  vec3 t = normalize(tangentW - dot(tangentW, n) * n);
  vec3 b = cross(n, t);
  return normalize(mat3(t, b, n) * normalT);
}

// The surface colour of the technique's maps at one point.
vec4 ShadeSurface(vec3 positionW, vec3 normalW, vec3 tangentW, vec2 uv, float receivesShadow) {
  vec3 normal = normalize(normalW);
  vec4 texColor = vec4(1.0);
  vec4 specularMask = vec4(1.0);
#ifdef USE_TEXTURE
  texColor = texture(gDiffuseMap, uv);
#endif
#ifdef USE_NORMAL_MAP
  normal = BumpedNormal(normalW, tangentW, uv);
#endif
#ifdef USE_SPECULAR_MAP
  specularMask = texture(gSpecularMap, uv);
#endif
  return LightPoint(positionW, normal, texColor, specularMask, receivesShadow);
}
#endif
